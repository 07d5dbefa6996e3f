#pragma once

#include "account/sign_in_error.h"

#include "core/auth_endpoint.h"

#include "platform/task.h"

#include <QPointer>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace nivora {

class AuthStore;
class WebAuthFlow;
struct AuthSession;

namespace platform {
class WebBrowser;
}

// The ways to sign in to the cloud. Each attempt gives what went wrong, absent on
// success, when somebody is signed in; a failed one changes nothing. Dropping its
// task gives up an attempt without a word. Main thread only.
class SignIn
{
public:
    using Done = std::function<void(std::optional<SignInError>)>;

    // Borrows the store and the browser, which outlive every attempt.
    // `language`: the code of the interface's language, "en" when empty.
    SignIn(AuthStore &store, AuthEndpoint endpoint, platform::WebBrowser &browser,
           QString language);
    ~SignIn();

    // Has a code mailed to the address, which is sent without the blanks around it.
    platform::Task sendCode(const QString &email, Done done) const;

    // Signs in with the mailed code, which is sent as typed.
    platform::Task verify(const QString &email, const QString &code, Done done);

    // Signs in on a page in the browser. Waits, without a limit, for the link that
    // the page leads to. An attempt that is under way ends as cancelled.
    platform::Task signInWithGoogle(Done done);

    // Ends the attempt in the browser as cancelled; nobody hears of a tab that was
    // closed. No effect when there is none.
    void giveUp();

    // To be called with every "nivora:" link that the desktop hands over. The first
    // one ends the attempt in the browser; without an attempt the link is dropped.
    void openLink(const QUrl &link);

private:
    std::optional<SignInError> keep(const AuthResult<AuthSession> &result);

    AuthStore &m_store;
    AuthEndpoint m_endpoint;
    platform::WebBrowser &m_browser;
    QString m_language;
    QPointer<WebAuthFlow> m_flow; // the last one
};

} // namespace nivora
