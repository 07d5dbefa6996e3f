#pragma once

#include "core/billing_service.h"

#include "platform/task.h"

#include <QObject>
#include <QString>

#include <list>
#include <optional>

namespace nivora {

class KeychainStore;

namespace platform {
class WebBrowser;
}

// The account's plan and usage for the interface. What fails ends in errorText().
// Reads the session token from the keychain at each call.
class BillingStore : public QObject
{
    Q_OBJECT

public:
    // Borrows keychain and browser.
    BillingStore(AuthEndpoint endpoint, const KeychainStore &keychain,
                 platform::WebBrowser &browser);

    // The last answer, also when a later refresh failed. Absent before the first
    // one, and from the first refresh after a sign-out on.
    const std::optional<BillingStatus> &status() const { return m_status; }
    bool isLoading() const { return !m_refreshes.empty(); } // a refresh is under way
    QString errorText() const { return m_errorText; }       // empty: no error; plain text

    void refresh();

    // Open the server's page to buy the plan, or to manage it, in the browser.
    // Nobody signed in: nothing happens. A page that is still being asked for is
    // given up for the new one.
    void openCheckout();
    void openPortal();

Q_SIGNALS:
    // Status, loading or the error text.
    void changed();

private:
    using PageRequest = platform::Task (BillingService::*)(const platform::SecretText &,
                                                           BillingService::OnPage) const;

    platform::SecretText token() const;
    void openPage(PageRequest request);
    void setErrorText(const QString &text);

    BillingService m_service;
    const KeychainStore &m_keychain;
    platform::WebBrowser &m_browser;

    std::optional<BillingStatus> m_status;
    QString m_errorText;
    int m_signOuts = 0; // that a refresh has met
    std::list<platform::Task> m_refreshes;
    platform::Task m_page;
};

} // namespace nivora
