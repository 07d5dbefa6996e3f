#pragma once

#include "core/auth_endpoint.h"
#include "core/auth_error.h"

#include "platform/task.h"

#include <QString>

#include <functional>
#include <optional>

namespace nivora {

// What a sign-in returns.
struct AuthSession
{
    QString token;
    QString email; // text to show; possibly empty

    bool operator==(const AuthSession &) const = default;
};

// Whether the text can serve as a session token: 1 to 8192 visible ASCII
// characters, so that it fits a header and does not end it.
bool isSessionToken(QStringView text);

// The cloud's requests for a sign-in by e-mail. Nothing is sent a second time,
// and no redirect is followed: it counts as the HTTP error that it is.
class AuthService
{
public:
    // `language`: the code of the interface's language, "en" when empty.
    AuthService(AuthEndpoint endpoint, QString language);

    // Has a code mailed to the address. Gives what went wrong, absent on success.
    platform::Task startEmail(const QString &email,
                              std::function<void(std::optional<AuthError>)> done) const;

    // Exchanges the mailed code for a session.
    platform::Task verify(const QString &email, const QString &code,
                          std::function<void(AuthResult<AuthSession>)> done) const;

    // The page in the browser where a sign-in with Google begins.
    static QUrl googleStart(const QUrl &baseURL);

private:
    AuthEndpoint m_endpoint;
    QString m_language;
};

} // namespace nivora
