#include "auth_request.h"

#include "http_parts.h"

#include "core/auth_service.h"
#include "core/network_fault_text.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Far more than any answer holds; a server cannot fill the memory.
constexpr qsizetype maximumAnswer = 256 * 1024;

// What the server says for the user: its answer is a map of texts, and one of
// them is called "error". Empty otherwise.
QString serverText(const QByteArray &answer)
{
    const QJsonObject texts = answerObject(answer);
    const bool isMapOfTexts =
        std::ranges::all_of(texts, [](const QJsonValue &each) { return each.isString(); });
    return isMapOfTexts ? texts[u"error"].toString() : QString();
}

} // namespace

QJsonObject answerObject(const QByteArray &answer)
{
    return QJsonDocument::fromJson(answer).object();
}

AuthRequest::AuthRequest(const AuthEndpoint &endpoint, const Content &content, Done done)
    : m_done(std::move(done))
{
    if (!content.token || isSessionToken(**content.token))
        send(endpoint, content);
    else
        m_refusal = platform::delay(0ms, [this] { end(AuthError::invalidResponse()); });
}

void AuthRequest::send(const AuthEndpoint &endpoint, const Content &content)
{
    QNetworkRequest request(appendPath(endpoint.baseURL, content.path));
    if (!content.json.isEmpty())
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
    if (content.token)
        setBearer(request, (**content.token).toLatin1());
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(int(endpoint.timeout.count()));
    if (content.method == "GET"_ba) {
        m_reply = endpoint.session.get(request);
    } else {
        request.setHeader(QNetworkRequest::ContentLengthHeader, content.json.size());
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        // An empty body keeps Qt from sending the request twice, too.
        auto *body = new SingleUseBody(content.json);
        // As a method of the caller's own, for which Qt makes up no content type.
        m_reply = endpoint.session.sendCustomRequest(request, content.method, body);
        body->setParent(m_reply);
    }
    connect(m_reply, &QNetworkReply::readyRead, this, &AuthRequest::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, [this] {
        if (m_reply->isOpen()) // not after a time-out
            m_answer += m_reply->readAll();
        end(outcome());
    });
}

void AuthRequest::onReadyRead()
{
    m_answer += m_reply->readAll();
    if (m_answer.size() <= maximumAnswer)
        return;
    m_answer.clear();
    const AuthResult<QByteArray> result = outcome();
    end(std::holds_alternative<AuthError>(result) ? result : AuthError::invalidResponse());
}

AuthResult<QByteArray> AuthRequest::outcome() const
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool failed = m_reply->error() != QNetworkReply::NoError;
    if (status == 0)
        return failed ? AuthError::network(networkFaultText(*m_reply))
                      : AuthError::invalidResponse();
    if (status < 200 || status > 299)
        return AuthError::http(status, serverText(m_answer));
    if (failed && !isWholeDespiteError(*m_reply, m_answer.size()))
        return AuthError::network(networkFaultText(*m_reply));
    return m_answer;
}

void AuthRequest::end(const AuthResult<QByteArray> &result)
{
    finish([&] { m_done(result); });
}

void AuthRequest::stop()
{
    m_refusal.cancel();
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_reply = nullptr;
}

} // namespace nivora
