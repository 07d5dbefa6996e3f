#pragma once

#include <QObject>

#include <memory>

namespace nivora {

class AuthStore;
class DialogCard;
class SignIn;

namespace platform {
class Accessibility;
class WindowSystem;
} // namespace platform

// Owns the window of the first start: it teaches the double Shift by having the
// user do it, asks for the sign-in and for accessibility, and names the triggers.
class OnboardingWindowController : public QObject
{
    Q_OBJECT

public:
    // The borrowed objects outlive this one.
    OnboardingWindowController(const AuthStore &auth, SignIn &signIn,
                               const platform::Accessibility &accessibility,
                               platform::WindowSystem &windowSystem);
    ~OnboardingWindowController() override;

    // Opens the window, or brings it to the front.
    void show();

    bool isVisible() const;

Q_SIGNALS:
    // The user wants accessibility switched on: to be asked for at once, and the
    // desktop's settings to be opened where that does not suffice. The window
    // sees by itself when it is there.
    void accessibilityRequested();

    // The onboarding is over, however the user ended it, and the window is closed.
    void finished();

private:
    void makeWindow();
    void finish();

    const AuthStore &m_auth;
    SignIn &m_signIn;
    const platform::Accessibility &m_accessibility;
    platform::WindowSystem &m_windowSystem;
    std::unique_ptr<DialogCard> m_window; // null before the first use
};

} // namespace nivora
