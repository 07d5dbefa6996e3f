#include "core/auth_service.h"

#include "auth_request.h"
#include "http_parts.h"

#include <QJsonDocument>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr qsizetype maximumToken = 8192; // what servers commonly take as a header

AuthRequest::Content postOf(QStringView path, const QJsonObject &body)
{
    return {.method = "POST"_ba,
            .path = path,
            .json = QJsonDocument(body).toJson(QJsonDocument::Compact)};
}

AuthResult<AuthSession> sessionOf(const QByteArray &answer)
{
    const QJsonObject object = answerObject(answer);
    const QJsonValue token = object[u"token"];
    const QJsonValue email = object[u"email"];
    if (!isSessionToken(token.toString()) || !email.isString())
        return AuthError::invalidResponse();
    return AuthSession{token.toString(), email.toString()};
}

} // namespace

bool isSessionToken(QStringView text)
{
    return !text.isEmpty() && text.size() <= maximumToken &&
           std::ranges::all_of(text, [](QChar each) { return each > u' ' && each < u'\x7F'; });
}

AuthService::AuthService(AuthEndpoint endpoint, QString language)
    : m_endpoint(std::move(endpoint))
    , m_language(language.isEmpty() ? u"en"_s : std::move(language))
{
}

platform::Task AuthService::startEmail(const QString &email,
                                       std::function<void(std::optional<AuthError>)> done) const
{
    return platform::Task(new AuthRequest(
        m_endpoint, postOf(u"auth/email/start", {{u"email"_s, email}, {u"lang"_s, m_language}}),
        [done = std::move(done)](const AuthResult<QByteArray> &result) {
            const auto *error = std::get_if<AuthError>(&result);
            done(error ? std::optional(*error) : std::nullopt);
        }));
}

platform::Task AuthService::verify(const QString &email, const QString &code,
                                   std::function<void(AuthResult<AuthSession>)> done) const
{
    return platform::Task(new AuthRequest(
        m_endpoint, postOf(u"auth/email/verify", {{u"email"_s, email}, {u"code"_s, code}}),
        [done = std::move(done)](const AuthResult<QByteArray> &result) {
            if (const auto *error = std::get_if<AuthError>(&result))
                done(*error);
            else
                done(sessionOf(std::get<QByteArray>(result)));
        }));
}

QUrl AuthService::googleStart(const QUrl &baseURL)
{
    return appendPath(baseURL, u"auth/google/start");
}

} // namespace nivora
