#include "settings_account_tab.h"

#include "panel_button.h"
#include "settings_section.h"
#include "sign_in_form.h"
#include "subscription_settings_section.h"
#include "symbol_label.h"
#include "usage_settings_section.h"

#include "account/auth_store.h"
#include "account/billing_store.h"

#include <QHBoxLayout>
#include <QLabel>

namespace nivora {

namespace {

// Logical pixels.
constexpr int valuePixels = 13;
constexpr int emailWidth = 310;

} // namespace

SettingsAccountTab::SettingsAccountTab(const SettingsWindowController::Parts &parts,
                                       QWidget *parent)
    : SettingsForm(parent)
    , m_parts(parts)
{
    addSignIn();
    addAccount();
    m_signedIn << new SubscriptionSettingsSection(parts.billing, this)
               << new UsageSettingsSection(parts.usage, this);
    addSection(m_signedIn.at(1));
    addSection(m_signedIn.at(2));
    connect(&parts.auth, &AuthStore::changed, this, &SettingsAccountTab::render);
    render();
}

void SettingsAccountTab::addSignIn()
{
    auto *section = addSection(tr("登录"));
    section->addBlock(SettingsSection::makeLabel(
        tr("登录后即可使用 Nivora 云端翻译，用量与订阅随账户保存。"), section));
    section->addBlock(new SignInForm(m_parts.signIn, section));
    m_signedOut = section;
}

void SettingsAccountTab::addAccount()
{
    auto *section = addSection(tr("账户"));
    m_email = new NoteLabel(valuePixels, section);
    m_email->setWordWrap(true);
    m_email->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_email->setFixedWidth(emailWidth);
    section->addRow(tr("已登录"), m_email);
    auto *content = new QWidget(section);
    auto *signOut = new PanelButton(PanelButton::Look::Secondary, content);
    signOut->setText(tr("登出"));
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(signOut);
    line->addStretch();
    section->addBlock(content);
    connect(signOut, &PanelButton::clicked, this, [this] {
        m_parts.auth.signOut();
        m_parts.billing.refresh();
    });
    m_signedIn << section;
}

void SettingsAccountTab::render()
{
    const bool isSignedIn = m_parts.auth.isSignedIn();
    m_email->setText(m_parts.auth.email());
    m_signedOut->setVisible(!isSignedIn);
    for (QWidget *section : std::as_const(m_signedIn))
        section->setVisible(isSignedIn);
}

// The keychain may have been locked when it was last asked.
void SettingsAccountTab::showEvent(QShowEvent *event)
{
    m_parts.auth.settle();
    render();
    SettingsForm::showEvent(event);
}

} // namespace nivora
