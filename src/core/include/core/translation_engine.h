#pragma once

#include "core/language.h"
#include "core/token_usage.h"
#include "core/translation_config.h"
#include "core/translation_error.h"
#include "core/translation_options.h"

#include "platform/task.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QString>

#include <functional>
#include <optional>

namespace nivora {

// The one client of the translation service, for the cloud and for endpoints of
// the user's own. Several calls may run at once. Nothing is cached on disk.
class TranslationEngine
{
public:
    struct Callbacks
    {
        // Pieces in order; their concatenation is the translation. Never empty.
        std::function<void(const QString &)> onPiece;
        // Once for each report of the service, also for runs that then fail.
        std::function<void(const TokenUsage &)> onUsage;
        // At most once, before the first piece.
        std::function<void(const QString &)> onTranslationId;
        // The terminal result: absent for a complete translation.
        std::function<void(const std::optional<TranslationError> &)> onFinished;
    };

    TranslationEngine();

    // Streams a translation. One retry, 400 ms after a passing network fault,
    // and only before the first byte of an answer: no piece comes twice.
    platform::Task translate(const QString &text, Language target,
                             const TranslationOptions &options, const TranslationConfig &config,
                             Callbacks callbacks);

    // The cloud's request body.
    static QJsonObject translateBody(const QString &text, Language target,
                                     const TranslationOptions &options, bool stream);

private:
    QNetworkAccessManager m_session;
};

} // namespace nivora
