#include "sign_in_page.h"

#include "sign_in_form.h"

#include "account/auth_store.h"

#include <QVBoxLayout>

namespace nivora {

namespace {

// Logical pixels.
constexpr int subtitlePixels = 13;
constexpr int formMargin = 22; // to the left and to the right

} // namespace

SignInPage::SignInPage(const AuthStore &auth, SignIn &signIn, QWidget *parent)
    : OnboardingPage(parent)
    , m_auth(auth)
    , m_form(new SignInForm(signIn, this))
    , m_next(makeMainButton(tr("继续")))
    , m_signedIn(makeSuccess(tr("已登录"), m_next))
{
    setMainButton(m_next);
    m_form->setContentsMargins(formMargin, 0, formMargin, 0);
    column().addSpacing(16);
    addTitle(tr("登录"));
    column().addSpacing(8);
    addNote(tr("你的用量与订阅随账户保存。"), subtitlePixels);
    column().addSpacing(26);
    column().addWidget(m_form);
    column().addWidget(m_signedIn, 1);
    column().addStretch();
    m_signedIn->hide();
    connect(m_form, &SignInForm::signedIn, this, &OnboardingPage::advanceRequested);
    connect(&m_auth, &AuthStore::changed, this, &SignInPage::render);
}

void SignInPage::begin()
{
    render();
    takeKeyboard();
}

void SignInPage::takeKeyboard()
{
    if (m_form->isHidden())
        OnboardingPage::begin();
    else
        m_form->focusField();
}

void SignInPage::render()
{
    const bool signedIn = m_auth.isSignedIn();
    const bool hadKeyboard = isAncestorOf(window()->focusWidget());
    m_signedIn->setVisible(signedIn);
    m_form->setVisible(!signedIn);
    if (hadKeyboard)
        takeKeyboard();
}

} // namespace nivora
