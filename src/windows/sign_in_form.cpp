#include "sign_in_form.h"

#include "announcer.h"
#include "divider.h"
#include "panel_button.h"
#include "spinner.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include "platform/characters.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr qsizetype codeLength = 6; // characters

// Logical pixels.
constexpr int textPixels = 13;
constexpr int notePixels = 12;
constexpr int fieldHeight = 34;
constexpr int fieldPadding = 6;
constexpr int gap = 10;
constexpr int gapAroundSeparator = 3; // and the gap

// A server may answer anything.
constexpr qsizetype mostOfError = 240;

QVBoxLayout *makeColumn(QWidget *page)
{
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    return column;
}

QHBoxLayout *makeRow(QWidget *page, int spacing)
{
    auto *row = new QHBoxLayout(page);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

NoteLabel *makeNote(QWidget *parent, NoteLabel::Tone tone)
{
    auto *note = new NoteLabel(notePixels, parent, tone);
    note->setWordWrap(true);
    return note;
}

PanelButton *makeLarge(PanelButton::Look look, QWidget *parent)
{
    auto *button = new PanelButton(look, parent);
    button->setLarge();
    return button;
}

} // namespace

SignInForm::SignInForm(SignIn &signIn, QWidget *parent)
    : QWidget(parent)
    , m_signIn(signIn)
    , m_emailPage(makeEmailPage())
    , m_codePage(makeCodePage())
    , m_error(makeNote(this, NoteLabel::Tone::Error))
    , m_waiting(makeWaiting())
    , m_announcer(new Announcer(this))
{
    QWidget *separator = makeSeparator();
    m_google = makeLarge(PanelButton::Look::Secondary, this);
    m_google->setSymbol(u"globe"_s);
    m_google->setText(tr("用 Google 登录"));
    connect(m_google, &PanelButton::clicked, this, &SignInForm::googleSignIn);

    auto *column = makeColumn(this);
    column->addWidget(m_emailPage);
    column->addWidget(m_codePage);
    column->addWidget(m_error);
    column->addWidget(m_waiting);
    column->addSpacing(gapAroundSeparator);
    column->addWidget(separator);
    column->addSpacing(gapAroundSeparator);
    column->addWidget(m_google);
    render();
}

QLineEdit *SignInForm::makeField(const QString &placeholder)
{
    auto *field = new QLineEdit(this);
    field->setFont(textFont(textPixels));
    field->setFixedHeight(fieldHeight);
    field->setTextMargins(fieldPadding, 0, fieldPadding, 0);
    field->setPlaceholderText(placeholder);
    field->setAccessibleName(placeholder);
    return field;
}

QWidget *SignInForm::makeEmailPage()
{
    auto *page = new QWidget(this);
    m_email = makeField(tr("邮箱"));
    m_email->setInputMethodHints(Qt::ImhEmailCharactersOnly | Qt::ImhNoAutoUppercase |
                                 Qt::ImhNoPredictiveText);
    m_send = makeLarge(PanelButton::Look::Prominent, page);
    auto *column = makeColumn(page);
    column->addWidget(m_email);
    column->addWidget(m_send);
    connect(m_email, &QLineEdit::textChanged, this, &SignInForm::render);
    connect(m_send, &PanelButton::clicked, this, &SignInForm::send);
    return page;
}

QWidget *SignInForm::makeCodePage()
{
    auto *page = new QWidget(this);
    m_caption = makeNote(page, NoteLabel::Tone::Secondary);
    m_code = makeField(tr("6 位验证码"));
    m_code->setInputMethodHints(Qt::ImhPreferNumbers | Qt::ImhNoPredictiveText);
    m_verify = makeLarge(PanelButton::Look::Prominent, page);
    m_back = new PanelButton(PanelButton::Look::Plain, page);
    m_back->setText(tr("返回"));
    auto *buttons = makeRow(nullptr, gap);
    buttons->addWidget(m_verify);
    buttons->addWidget(m_back);
    auto *column = makeColumn(page);
    column->addWidget(m_caption);
    column->addWidget(m_code);
    column->addLayout(buttons);
    connect(m_code, &QLineEdit::textEdited, this, &SignInForm::takeCode);
    connect(m_code, &QLineEdit::textChanged, this, &SignInForm::render);
    connect(m_verify, &PanelButton::clicked, this, &SignInForm::verify);
    connect(m_back, &PanelButton::clicked, this, &SignInForm::goBack);
    return page;
}

QWidget *SignInForm::makeWaiting()
{
    constexpr int spinnerSide = 14;
    auto *page = new QWidget(this);
    auto *note = makeNote(page, NoteLabel::Tone::Secondary);
    note->setText(tr("请在浏览器中完成登录"));
    auto *giveUp = new PanelButton(PanelButton::Look::Plain, page);
    giveUp->setText(tr("取消"));
    auto *row = makeRow(page, gap);
    row->addWidget(new Spinner(spinnerSide, page));
    row->addWidget(note, 1);
    row->addWidget(giveUp);
    connect(giveUp, &PanelButton::clicked, this, [this] { m_signIn.giveUp(); });
    return page;
}

QWidget *SignInForm::makeSeparator()
{
    auto *separator = new QWidget(this);
    auto *word = new NoteLabel(notePixels, separator);
    word->setText(tr("或"));
    auto *row = makeRow(separator, gap);
    row->addWidget(new Divider(separator), 1);
    row->addWidget(word);
    row->addWidget(new Divider(separator), 1);
    return separator;
}

QString SignInForm::email() const
{
    return m_email->text().trimmed();
}

bool SignInForm::canSendEmail() const
{
    return email().contains(u'@') && email().contains(u'.');
}

bool SignInForm::canVerify() const
{
    return platform::characterCount(m_code->text()) == codeLength;
}

void SignInForm::send()
{
    run(
        Request::Send,
        [this](SignIn::Done done) { return m_signIn.sendCode(email(), std::move(done)); },
        [this] { m_stage = Stage::Code; });
}

void SignInForm::verify()
{
    run(
        Request::Verify,
        [this](SignIn::Done done) {
            return m_signIn.verify(email(), m_code->text(), std::move(done));
        },
        [this] { Q_EMIT signedIn(); });
}

void SignInForm::googleSignIn()
{
    run(
        Request::Google,
        [this](SignIn::Done done) { return m_signIn.signInWithGoogle(std::move(done)); },
        [this] { Q_EMIT signedIn(); });
}

void SignInForm::run(Request request, const Start &start, const std::function<void()> &succeeded)
{
    // What is disabled loses the keyboard, and the next control to get it could be
    // one that closes the window on the second of two impatient Returns.
    if (isAncestorOf(window()->focusWidget()))
        setFocus();
    m_request = request;
    m_errorText.clear();
    m_announcer->withdraw();
    render();
    m_task = start([this, succeeded](const std::optional<SignInError> &error) {
        if (error)
            m_errorText = errorDescription(*error).simplified();
        else
            succeeded();
        m_request = Request::None;
        render();
        if (error)
            m_announcer->announce(m_error->text());
        if (window()->focusWidget() == this)
            focusField();
    });
}

void SignInForm::goBack()
{
    m_stage = Stage::Email;
    m_errorText.clear();
    m_code->clear();
    render();
    focusField();
}

// A code is copied along with blanks, and mails write some between its digits.
void SignInForm::takeCode(const QString &typed)
{
    QString code = typed;
    code.removeIf([](QChar each) { return each.isSpace(); });
    if (!canVerify() && platform::characterCount(code) == codeLength)
        m_code->setText(code);
}

void SignInForm::focusField()
{
    (m_stage == Stage::Email ? m_email : m_code)->setFocus();
}

void SignInForm::render()
{
    const bool idle = !isBusy();
    m_emailPage->setVisible(m_stage == Stage::Email);
    m_email->setEnabled(idle);
    m_send->setEnabled(idle && canSendEmail());
    m_send->setText(m_request == Request::Send ? tr("发送中…") : tr("发送验证码"));

    m_codePage->setVisible(m_stage == Stage::Code);
    //: OTP code sent to email
    m_caption->setText(tr("验证码已发送到 %1，请查收邮箱。").arg(email()));
    m_code->setEnabled(idle);
    m_verify->setEnabled(idle && canVerify());
    m_verify->setText(m_request == Request::Verify ? tr("登录中…") : tr("登录"));
    m_back->setEnabled(idle);

    const bool cut = m_errorText.size() > mostOfError;
    m_error->setText(cut ? m_errorText.left(mostOfError) + u'…' : m_errorText);
    m_error->setVisible(!m_errorText.isEmpty());
    m_waiting->setVisible(m_request == Request::Google);
    m_google->setEnabled(idle);
}

// Return is for the main button, wherever the keyboard is.
void SignInForm::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn)
        return QWidget::keyPressEvent(event);
    PanelButton *main = m_stage == Stage::Email ? m_send : m_verify;
    main->click();
}

} // namespace nivora
