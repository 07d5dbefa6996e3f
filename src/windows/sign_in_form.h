#pragma once

#include "account/sign_in.h"

#include "platform/task.h"

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;

namespace nivora {

class PanelButton;
class Announcer;

// The one place where a user signs in: with a code that is mailed, or with Google
// in the browser. Its state, and a request that is under way, outlast its hiding.
class SignInForm : public QWidget
{
    Q_OBJECT

public:
    // `signIn` outlives the form.
    SignInForm(SignIn &signIn, QWidget *parent);

    // Gives the keyboard to the field to fill in next.
    void focusField();

Q_SIGNALS:
    void signedIn();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Stage { Email, Code };
    enum class Request { None, Send, Verify, Google };
    using Start = std::function<platform::Task(SignIn::Done)>;

    QLineEdit *makeField(const QString &placeholder);
    QWidget *makeEmailPage();
    QWidget *makeCodePage();
    QWidget *makeWaiting();
    QWidget *makeSeparator();

    bool isBusy() const { return m_request != Request::None; }
    QString email() const;
    bool canSendEmail() const;
    bool canVerify() const;

    void send();
    void verify();
    void googleSignIn();
    void run(Request request, const Start &start, const std::function<void()> &succeeded);
    void goBack();
    void takeCode(const QString &typed);
    void render();

    SignIn &m_signIn;
    Stage m_stage = Stage::Email;
    Request m_request = Request::None;
    QString m_errorText; // empty: no error
    platform::Task m_task;

    // Made along with what holds them, which comes next.
    QLineEdit *m_email = nullptr;
    PanelButton *m_send = nullptr;
    QLabel *m_caption = nullptr;
    QLineEdit *m_code = nullptr;
    PanelButton *m_verify = nullptr;
    PanelButton *m_back = nullptr;
    QWidget *m_emailPage;
    QWidget *m_codePage;
    QLabel *m_error;
    QWidget *m_waiting;
    Announcer *m_announcer;
    PanelButton *m_google;
};

} // namespace nivora
