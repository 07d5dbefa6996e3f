#pragma once

#include <QWidget>

namespace nivora {

class SignIn;
class SignInForm;

// What the login window shows.
class LoginView : public QWidget
{
    Q_OBJECT

public:
    // `signIn` outlives the view.
    LoginView(SignIn &signIn, QWidget *parent);

    void focusField();

Q_SIGNALS:
    void done(); // somebody has signed in here

private:
    SignInForm *m_form;
};

} // namespace nivora
