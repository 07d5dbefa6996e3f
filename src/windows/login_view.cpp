#include "login_view.h"

#include "sign_in_form.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include <QVBoxLayout>

namespace nivora {

namespace {

// Logical pixels.
constexpr QMargins padding(28, 34, 28, 22);
constexpr int titlePixels = 19;
constexpr int textPixels = 13;
constexpr int gapBelowTitle = 6;
constexpr int gapAboveForm = 22;

} // namespace

LoginView::LoginView(SignIn &signIn, QWidget *parent)
    : QWidget(parent)
    , m_form(new SignInForm(signIn, this))
{
    auto *title = new QLabel(tr("登录 Nivora"), this);
    title->setFont(titleFont(titlePixels));
    title->setAlignment(Qt::AlignHCenter);
    auto *note = new NoteLabel(textPixels, this);
    note->setText(tr("登录后即可使用 Nivora 云端翻译。"));
    note->setWordWrap(true);
    note->setAlignment(Qt::AlignHCenter);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding);
    column->setSpacing(0);
    column->addWidget(title);
    column->addSpacing(gapBelowTitle);
    column->addWidget(note);
    column->addSpacing(gapAboveForm);
    column->addWidget(m_form);
    column->addStretch();
    connect(m_form, &SignInForm::signedIn, this, &LoginView::done);
}

void LoginView::focusField()
{
    m_form->focusField();
}

} // namespace nivora
