#pragma once

#include "core/language.h"
#include "core/token_usage.h"
#include "core/translation_config.h"
#include "core/translation_error.h"
#include "core/translation_options.h"

#include "platform/http_client.h"
#include "platform/task.h"

#include <QJsonObject>
#include <QStringList>

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

    // An error comes with an empty result.
    using OnText =
        std::function<void(const QString &text, const std::optional<TranslationError> &error)>;
    using OnVariants = std::function<void(const QStringList &variants,
                                          const std::optional<TranslationError> &error)>;

    // Borrows the client, which outlives every call under way.
    explicit TranslationEngine(platform::HttpClient &http)
        : m_http(http)
    {
    }

    // Streams a translation. One retry, 400 ms after a passing network fault,
    // and only before the first byte of an answer: no piece comes twice.
    platform::Task translate(const QString &text, Language target,
                             const TranslationOptions &options, const TranslationConfig &config,
                             Callbacks callbacks);

    // The same translation as one answer, without options, usage or id. The text
    // is trimmed, and empty when the service found nothing to say. One retry as
    // above, also for an answer that broke off.
    platform::Task translateOnce(const QString &text, Language target,
                                 const TranslationConfig &config, OnText done);

    // Up to `count` different phrasings, in the service's order; perhaps none.
    platform::Task variants(const QString &text, Language target, int count,
                            const TranslationConfig &config, OnVariants done);

    // The phrasings in an answer of one a line, without numbers, bullets and
    // repeats. Stops once `max` are kept, so that 0 still gives the first.
    static QStringList parseVariants(const QString &answer, int max);

    // The cloud's request body.
    static QJsonObject translateBody(const QString &text, Language target,
                                     const TranslationOptions &options, bool stream);

private:
    // In the form of either backend.
    static QJsonObject translateRequestBody(const QString &text, Language target,
                                            const TranslationOptions &options,
                                            const TranslationConfig &config, bool stream);

    platform::HttpClient &m_http;
};

} // namespace nivora
