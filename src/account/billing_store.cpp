#include "account/billing_store.h"

#include "stores/keychain_store.h"

#include "platform/web_browser.h"

namespace nivora {

BillingStore::BillingStore(AuthEndpoint endpoint, const KeychainStore &keychain,
                           platform::WebBrowser &browser)
    : m_service(std::move(endpoint))
    , m_keychain(keychain)
    , m_browser(browser)
{
}

platform::SecretText BillingStore::token() const
{
    return m_keychain.read(KeychainStore::sessionTokenAccount()).value_or(platform::SecretText());
}

void BillingStore::refresh()
{
    const platform::SecretText current = token();
    if (current.isEmpty()) {
        ++m_signOuts;
        m_status.reset();
        Q_EMIT changed();
        return;
    }
    m_errorText.clear();
    const auto refresh = m_refreshes.emplace(m_refreshes.end());
    *refresh = m_service.status(
        current, [this, refresh, signOuts = m_signOuts](const AuthResult<BillingStatus> &result) {
            m_refreshes.erase(refresh);
            // An answer about somebody who has signed out since is no news.
            if (signOuts == m_signOuts) {
                if (const auto *status = std::get_if<BillingStatus>(&result))
                    m_status = *status;
                else
                    m_errorText = std::get<AuthError>(result).errorDescription();
            }
            Q_EMIT changed();
        });
    Q_EMIT changed();
}

void BillingStore::openCheckout()
{
    openPage(&BillingService::checkoutURL);
}

void BillingStore::openPortal()
{
    openPage(&BillingService::portalURL);
}

void BillingStore::openPage(PageRequest request)
{
    const platform::SecretText current = token();
    if (current.isEmpty())
        return;
    setErrorText({});
    m_page = (m_service.*request)(current, [this](const AuthResult<QUrl> &result) {
        if (const auto *error = std::get_if<AuthError>(&result))
            return setErrorText(error->errorDescription());
        m_page = m_browser.open(std::get<QUrl>(result), [this](bool opened) {
            if (!opened)
                setErrorText(tr("无法打开浏览器。"));
        });
    });
}

void BillingStore::setErrorText(const QString &text)
{
    m_errorText = text;
    Q_EMIT changed();
}

} // namespace nivora
