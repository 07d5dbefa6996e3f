#include "auth_request.h"

#include "http_parts.h"

#include "core/auth_service.h"
#include "core/network_fault_text.h"

#include <QJsonDocument>

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
        m_exchange = platform::delay(0ms, [this] { end(AuthError::invalidResponse()); });
}

void AuthRequest::send(const AuthEndpoint &endpoint, const Content &content)
{
    platform::HttpRequest request{.method = content.method,
                                  .url = appendPath(endpoint.baseURL, content.path),
                                  .silence = endpoint.timeout};
    if (!content.json.isEmpty())
        request.headers.append({"Content-Type"_ba, "application/json"_ba});
    if (content.token)
        request.bearer = (**content.token).toLatin1();
    // An empty body keeps the client from sending the request twice, too.
    if (content.method != "GET"_ba)
        request.body = content.json;
    m_exchange = endpoint.http.send(
        request, {
                     .onHead = [this](const platform::HttpHead &head) { m_status = head.status; },
                     .onBytes = [this](const QByteArray &bytes) { onBytes(bytes); },
                     .onEnd = [this](const auto &failure) { end(outcome(failure)); },
                 });
}

void AuthRequest::onBytes(const QByteArray &bytes)
{
    m_answer += bytes;
    if (m_answer.size() <= maximumAnswer)
        return;
    m_answer.clear();
    const AuthResult<QByteArray> result = outcome({});
    end(std::holds_alternative<AuthError>(result) ? result : AuthError::invalidResponse());
}

AuthResult<QByteArray>
AuthRequest::outcome(const std::optional<platform::HttpFailure> &failure) const
{
    if (m_status != 0 && (m_status < 200 || m_status > 299))
        return AuthError::http(m_status, serverText(m_answer));
    if (failure)
        return AuthError::network(networkFaultText(*failure));
    if (m_status == 0)
        return AuthError::invalidResponse();
    return m_answer;
}

void AuthRequest::end(const AuthResult<QByteArray> &result)
{
    finish([&] { m_done(result); });
}

void AuthRequest::stop()
{
    m_exchange.cancel();
}

} // namespace nivora
