#pragma once

#include <QWidget>

namespace nivora {

class SignIn;

// What the login window shows.
class LoginView : public QWidget
{
    Q_OBJECT

public:
    // `signIn` outlives the view.
    LoginView(SignIn &signIn, QWidget *parent);

Q_SIGNALS:
    void done(); // somebody has signed in here
};

} // namespace nivora
