#pragma once

#include "core/language.h"

#include "platform/http_client.h"
#include "platform/secret.h"
#include "platform/task.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <array>
#include <functional>

namespace nivora {

// What is wrong with a translation.
enum class FeedbackReason { Mistranslation, Omission, Number, Tone, CannotEdit, Other };

inline constexpr std::array allFeedbackReasons{
    FeedbackReason::Mistranslation, FeedbackReason::Omission,   FeedbackReason::Number,
    FeedbackReason::Tone,           FeedbackReason::CannotEdit, FeedbackReason::Other,
};

// "mistranslation", "cannotEdit", ...
QString rawValue(FeedbackReason reason);

// The words to show, in the interface's language.
QString label(FeedbackReason reason);

// One user's word on one translation.
struct FeedbackReport
{
    QString source; // untrimmed
    QString translation;
    Language target = Language::Chinese;
    QString tid;     // the service's id of the translation; empty: unknown
    QString reason;  // raw value
    QString comment; // possibly empty
    QString context; // where the text came from, a JSON text; empty: unknown
};

// Hands reports on translations in to the cloud.
class FeedbackService
{
public:
    // Borrows the client, which outlives every report under way. `token` is the
    // signed-in user's; empty when nobody is.
    FeedbackService(platform::HttpClient &http, QUrl baseURL, const platform::SecretBytes &token);

    // True once the cloud has taken the report; false for everything else, within
    // 15 s of the last sign of life. Nothing is sent a second time. Without a
    // token nothing is sent at all.
    platform::Task submit(const FeedbackReport &report, std::function<void(bool)> done) const;

private:
    platform::HttpClient &m_http;
    QUrl m_baseURL;
    platform::SecretBytes m_token; // trimmed
};

} // namespace nivora
