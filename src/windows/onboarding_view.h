#pragma once

#include <QWidget>

namespace nivora {

class AuthStore;
class SignIn;

namespace platform {
class Accessibility;
}

// What the onboarding window shows: four steps, one way only.
class OnboardingView : public QWidget
{
    Q_OBJECT

public:
    // The borrowed objects outlive the view.
    OnboardingView(const AuthStore &auth, SignIn &signIn,
                   const platform::Accessibility &accessibility, QWidget *parent);

Q_SIGNALS:
    void accessibilityRequested();
    void done();
};

} // namespace nivora
