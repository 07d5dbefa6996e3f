#include "service_request.h"

#include "http_parts.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto retryPause = 400ms;
constexpr int maximumRedirects = 5;

bool isSameOrigin(const QUrl &one, const QUrl &other)
{
    const int standard = one.scheme() == u"https" ? 443 : 80;
    return one.scheme() == other.scheme() && one.host() == other.host() &&
           one.port(standard) == other.port(standard);
}

} // namespace

QJsonObject chatBody(const QString &prompt, const QString &model, double temperature)
{
    return {
        {u"model"_s, model},
        {u"messages"_s, QJsonArray{QJsonObject{{u"role"_s, u"user"_s}, {u"content"_s, prompt}}}},
        {u"temperature"_s, temperature},
    };
}

ServiceRequest::ServiceRequest(platform::HttpClient &http, const TranslationConfig &config,
                               Answer answer, const QJsonObject &body)
    : m_http(http)
    , m_request{
          .method = "POST"_ba,
          .url = appendPath(config.apiBaseURL,
                            config.cloud ? u"v1/translate" : u"v1/chat/completions"),
          .headers = {{"Content-Type"_ba, "application/json"_ba}},
          .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
          .silence = config.requestTimeout,
      }
    , m_answer(answer)
{
    if (answer == Answer::Stream)
        m_request.headers.append({"Accept"_ba, "text/event-stream"_ba});
    if (authorize(config.apiToken))
        send();
}

bool ServiceRequest::authorize(const platform::SecretBytes &apiToken)
{
    // A key that was pasted with a line end is still the same key.
    const platform::SecretBytes token = (*apiToken).trimmed();
    if (!isHeaderValue(*token)) {
        m_pause = platform::delay(0ms, [this] {
            onFailed(TranslationError::network(
                QCoreApplication::translate("TranslationError", "密钥含有无法发送的字符",
                                            "error: control characters in the API key")));
        });
        return false;
    }
    m_request.bearer = token;
    return true;
}

TranslationError ServiceRequest::invalidResponse()
{
    return TranslationError::network(
        QCoreApplication::translate("TranslationError", "无效响应", "error: invalid response"));
}

void ServiceRequest::send()
{
    m_exchange = m_http.send(
        m_request,
        {
            .onHead = [this](const platform::HttpHead &head) { onHead(head); },
            .onBytes =
                [this](const QByteArray &bytes) {
                    if (m_accepted)
                        onBytes(bytes);
                },
            .onEnd =
                [this](const std::optional<platform::HttpFailure> &failure) { onEnd(failure); },
        });
}

void ServiceRequest::onHead(const platform::HttpHead &head)
{
    if ((head.status == 307 || head.status == 308) && followRedirect(head))
        return;
    if (head.status < 200 || head.status > 299)
        return onFailed(TranslationError::http(head.status));
    m_accepted = true;
    onAccepted(head);
}

// Only the two statuses that keep method and body, and only within the origin:
// elsewhere the user's text, and the token, would reach a host that the user
// never named.
bool ServiceRequest::followRedirect(const platform::HttpHead &head)
{
    const QUrl target = m_request.url.resolved(QUrl::fromEncoded(head.header("Location")));
    if (m_redirects == maximumRedirects || !isSameOrigin(m_request.url, target))
        return false;
    ++m_redirects;
    m_request.url = target;
    m_exchange.cancel();
    m_pause = platform::delay(0ms, [this] { send(); });
    return true;
}

void ServiceRequest::onEnd(const std::optional<platform::HttpFailure> &failure)
{
    if (failure)
        return failOrRetry(*failure);
    if (!m_accepted) {
        return onFailed(m_answer == Answer::Stream ? invalidResponse()
                                                   : TranslationError::http(-1));
    }
    onComplete();
}

void ServiceRequest::failOrRetry(const platform::HttpFailure &failure)
{
    const bool worthIt = m_answer == Answer::Whole || !m_accepted;
    if (worthIt && !m_retried && TranslationError::isTransient(failure.fault)) {
        m_retried = true;
        m_accepted = false;
        m_pause = platform::delay(retryPause, [this] { send(); });
        return;
    }
    onFailed(TranslationError::from(failure.fault, failure.description));
}

void ServiceRequest::stop()
{
    m_exchange.cancel();
    m_pause.cancel();
}

} // namespace nivora
