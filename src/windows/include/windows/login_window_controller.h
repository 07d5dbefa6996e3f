#pragma once

#include <QObject>

#include <memory>

namespace nivora {

class DialogCard;
class SignIn;

namespace platform {
class WindowSystem;
}

// Owns the window in which the user signs in. It is made at the first use and only
// hidden afterwards: what was typed, and a request that is under way, outlast it.
// A sign-in closes it; who is signed in, AuthStore tells.
class LoginWindowController : public QObject
{
    Q_OBJECT

public:
    // The borrowed objects outlive this one.
    LoginWindowController(SignIn &signIn, platform::WindowSystem &windowSystem);
    ~LoginWindowController() override;

    // Opens the window, or brings it to the front.
    void show();
    void close();

    bool isVisible() const;

private:
    void makeWindow();

    SignIn &m_signIn;
    platform::WindowSystem &m_windowSystem;
    std::unique_ptr<DialogCard> m_window; // null before the first use
};

} // namespace nivora
