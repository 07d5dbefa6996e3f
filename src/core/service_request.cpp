#include "service_request.h"

#include "http_parts.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>

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

ServiceRequest::ServiceRequest(QNetworkAccessManager &session, const TranslationConfig &config,
                               Answer answer, const QJsonObject &body)
    : m_session(session)
    , m_request(
          appendPath(config.apiBaseURL, config.cloud ? u"v1/translate" : u"v1/chat/completions"))
    , m_body(QJsonDocument(body).toJson(QJsonDocument::Compact))
    , m_answer(answer)
{
    m_request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
    m_request.setHeader(QNetworkRequest::ContentLengthHeader, m_body.size());
    if (answer == Answer::Stream)
        m_request.setRawHeader("Accept"_ba, "text/event-stream"_ba);
    // Sends the body as it is read, so that it is read once.
    m_request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    m_request.setTransferTimeout(int(config.requestTimeout.count()));
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
    if (!token.isEmpty())
        setBearer(m_request, token);
    return true;
}

TranslationError ServiceRequest::invalidResponse()
{
    return TranslationError::network(
        QCoreApplication::translate("TranslationError", "无效响应", "error: invalid response"));
}

void ServiceRequest::send()
{
    auto *body = new SingleUseBody(m_body);
    m_reply = m_session.post(m_request, body);
    body->setParent(m_reply);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &ServiceRequest::onMetaData);
    connect(m_reply, &QNetworkReply::readyRead, this, &ServiceRequest::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, &ServiceRequest::onReplyFinished);
}

void ServiceRequest::onMetaData()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 0 || m_accepted)
        return;
    if ((status == 307 || status == 308) && followRedirect())
        return;
    if (status < 200 || status > 299)
        return onFailed(TranslationError::http(status));
    m_accepted = true;
    onAccepted(*m_reply);
}

// Only the two statuses that keep method and body, and only within the origin:
// elsewhere the user's text, and the token, would reach a host that the user
// never named.
bool ServiceRequest::followRedirect()
{
    const QUrl origin = m_request.url();
    const QUrl target = origin.resolved(QUrl::fromEncoded(m_reply->rawHeader("Location"_ba)));
    if (m_redirects == maximumRedirects || !isSameOrigin(origin, target))
        return false;
    ++m_redirects;
    m_request.setUrl(target);
    dropReply();
    m_pause = platform::delay(0ms, [this] { send(); });
    return true;
}

void ServiceRequest::onReadyRead()
{
    if (!m_accepted || !m_reply)
        return;
    const QByteArray bytes = m_reply->readAll();
    m_received += bytes.size();
    onBytes(bytes);
}

void ServiceRequest::onReplyFinished()
{
    const auto error = m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!m_accepted && status >= 300)
        return onFailed(TranslationError::http(status));
    const bool isWhole = error == QNetworkReply::NoError ||
                         (m_accepted && isWholeDespiteError(*m_reply, m_received));
    if (!isWhole)
        return failOrRetry(networkFault(error), m_reply->errorString());
    if (!m_accepted) {
        return onFailed(m_answer == Answer::Stream ? invalidResponse()
                                                   : TranslationError::http(-1));
    }
    onComplete();
}

void ServiceRequest::failOrRetry(NetworkFault fault, const QString &description)
{
    const bool worthIt = m_answer == Answer::Whole || !m_accepted;
    if (worthIt && !m_retried && TranslationError::isTransient(fault)) {
        m_retried = true;
        m_accepted = false;
        m_received = 0;
        dropReply();
        m_pause = platform::delay(retryPause, [this] { send(); });
        return;
    }
    onFailed(TranslationError::from(fault, description));
}

void ServiceRequest::dropReply()
{
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_reply = nullptr;
}

void ServiceRequest::stop()
{
    dropReply();
    m_pause.cancel();
}

} // namespace nivora
