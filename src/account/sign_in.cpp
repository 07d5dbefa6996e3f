#include "account/sign_in.h"

#include "account/auth_store.h"
#include "web_auth_flow.h"

#include "core/auth_service.h"

#include "platform/log.h"

#include <QUrlQuery>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int refusedByServer = 403; // whatever the server itself answered there

AuthResult<AuthSession> sessionOf(const QUrl &link)
{
    const QUrlQuery query(link);
    const auto valueOf = [&](const QString &name) {
        return query.queryItemValue(name, QUrl::FullyDecoded);
    };
    // Counts with an empty value too, but not without an equals sign.
    const QStringList errors = query.allQueryItemValues(u"error"_s, QUrl::FullyDecoded);
    const auto error = std::ranges::find_if_not(errors, &QString::isNull);
    if (error != errors.end())
        return AuthError::http(refusedByServer, *error);
    const QString token = valueOf(u"token"_s);
    if (!isSessionToken(token))
        return AuthError::invalidResponse();
    const QString email = valueOf(u"email"_s);
    return AuthSession{token, email.isEmpty() ? u"Google"_s : email};
}

} // namespace

SignIn::SignIn(AuthStore &store, AuthEndpoint endpoint, platform::WebBrowser &browser,
               QString language)
    : m_store(store)
    , m_endpoint(std::move(endpoint))
    , m_browser(browser)
    , m_language(std::move(language))
{
}

SignIn::~SignIn() = default;

platform::Task SignIn::sendCode(const QString &email, Done done) const
{
    return AuthService(m_endpoint, m_language)
        .startEmail(email.trimmed(), [done = std::move(done)](std::optional<AuthError> error) {
            done(error ? std::optional<SignInError>(*error) : std::nullopt);
        });
}

platform::Task SignIn::verify(const QString &email, const QString &code, Done done)
{
    return AuthService(m_endpoint, m_language)
        .verify(email.trimmed(), code,
                [this, done = std::move(done)](const AuthResult<AuthSession> &result) {
                    done(keep(result));
                });
}

platform::Task SignIn::signInWithGoogle(Done done)
{
    giveUp();
    m_flow = new WebAuthFlow(
        m_browser, AuthService::googleStart(m_endpoint.baseURL),
        [this, done = std::move(done)](const std::variant<QUrl, AuthFlowError> &result) {
            if (const auto *error = std::get_if<AuthFlowError>(&result))
                done(*error);
            else
                done(keep(sessionOf(std::get<QUrl>(result))));
        });
    return platform::Task(m_flow);
}

void SignIn::giveUp()
{
    if (m_flow)
        m_flow->giveUp();
}

void SignIn::openLink(const QUrl &link)
{
    if (m_flow && m_flow->isWaiting() && link.scheme() == u"nivora")
        m_flow->deliver(link);
    else
        // Nothing of it: it may hold a token.
        qCInfo(log::app) << "A link that no sign-in waits for was dropped";
}

std::optional<SignInError> SignIn::keep(const AuthResult<AuthSession> &result)
{
    if (const auto *error = std::get_if<AuthError>(&result))
        return *error;
    if (!m_store.signIn(std::get<AuthSession>(result)))
        return AuthFlowError::CannotStore;
    return std::nullopt;
}

} // namespace nivora
