#pragma once

#include "onboarding_page.h"

namespace nivora {

class AuthStore;
class SignIn;
class SignInForm;

// The second step, never passed by itself: who is signed in already goes on by
// the button.
class SignInPage : public OnboardingPage
{
    Q_OBJECT

public:
    SignInPage(const AuthStore &auth, SignIn &signIn, QWidget *parent);

    void begin() override;

private:
    void takeKeyboard();
    void render();

    const AuthStore &m_auth;
    SignInForm *m_form;
    PanelButton *m_next;
    QWidget *m_signedIn;
};

} // namespace nivora
