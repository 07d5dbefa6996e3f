#pragma once

#include "core/translation_config.h"
#include "core/translation_error.h"

#include "platform/http_client.h"
#include "platform/task.h"

#include <QJsonObject>

namespace nivora {

// One prompt as the whole conversation, for endpoints of the user's own.
QJsonObject chatBody(const QString &prompt, const QString &model, double temperature);

// One request to the translation service, with its one retry, up to the point
// where the answer's bytes get a meaning.
class ServiceRequest : public platform::Operation
{
protected:
    enum class Answer {
        Stream, // counts as it comes, so that nothing is retried once it has begun
        Whole,  // counts when it is complete, so that a broken one is worth a retry
    };

    ServiceRequest(platform::HttpClient &http, const TranslationConfig &config, Answer answer,
                   const QJsonObject &body);

    // A status from 200 to 299 has arrived; again after a retry.
    virtual void onAccepted(const platform::HttpHead &head) = 0;
    // The next bytes of an accepted answer.
    virtual void onBytes(const QByteArray &bytes) = 0;
    // All bytes of an accepted answer were given. Must finish().
    virtual void onComplete() = 0;
    // There will be no answer, or no more of it. Must finish().
    virtual void onFailed(const TranslationError &error) = 0;

    static TranslationError invalidResponse();

private:
    bool authorize(const platform::SecretBytes &apiToken);
    void send();
    void onHead(const platform::HttpHead &head);
    bool followRedirect(const platform::HttpHead &head);
    void onEnd(const std::optional<platform::HttpFailure> &failure);
    void failOrRetry(const platform::HttpFailure &failure);
    void stop() override;

    platform::HttpClient &m_http;
    platform::HttpRequest m_request;
    Answer m_answer;

    platform::Task m_exchange;
    platform::Task m_pause; // before the next attempt
    int m_redirects = 0;
    bool m_retried = false;
    bool m_accepted = false; // a status from 200 to 299 has arrived
};

} // namespace nivora
