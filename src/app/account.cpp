#include "app/account.h"

#include "account/billing_summary.h"

#include "stores/keychain_store.h"

#include <QLocale>

using namespace std::chrono_literals;

namespace nivora {

Account::Account(platform::Preferences &preferences, KeychainStore &keychain,
                 platform::WebBrowser &browser, const AuthEndpoint &endpoint,
                 const QString &language)
    : m_authStore(preferences, keychain)
    , m_signIn(m_authStore, endpoint, browser, language)
    , m_billingStore(endpoint, keychain, browser)
{
    connect(&m_authStore, &AuthStore::changed, this, &Account::refreshBilling);
    m_watch = keychain.watch([this] { refreshBilling(); });
}

void Account::refreshBilling()
{
    m_refresh = platform::delay(0ms, [this] {
        // What is settled now comes back here as a change.
        if (!m_authStore.settle())
            m_billingStore.refresh();
    });
}

std::optional<QString> Account::billingSummary() const
{
    const auto &status = m_billingStore.status();
    return status ? std::optional(nivora::billingSummary(*status, QLocale())) : std::nullopt;
}

} // namespace nivora
