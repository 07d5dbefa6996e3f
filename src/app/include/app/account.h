#pragma once

#include "account/auth_store.h"
#include "account/billing_store.h"
#include "account/sign_in.h"

#include "core/auth_endpoint.h"

#include "platform/task.h"

#include <QObject>
#include <QString>

#include <optional>

namespace nivora {

class KeychainStore;

namespace platform {
class Preferences;
class WebBrowser;
} // namespace platform

// The user's account with the cloud: who is signed in, the ways to sign in, and
// the plan, which is asked for anew whenever somebody signs in or out.
class Account : public QObject
{
    Q_OBJECT

public:
    // Borrows keychain, preferences and browser. `language`: the code of the
    // interface's language.
    Account(platform::Preferences &preferences, KeychainStore &keychain,
            platform::WebBrowser &browser, const AuthEndpoint &endpoint, const QString &language);

    // Asks for the plan, and who is signed in if the keychain has not said so yet;
    // called here too when a keychain that was late answers.
    // From the event loop: a trigger does not wait even for the keychain.
    void refreshBilling();

    // The menu's line about the plan; absent while nothing is known of it.
    std::optional<QString> billingSummary() const;

    AuthStore &authStore() { return m_authStore; }
    SignIn &signIn() { return m_signIn; }
    BillingStore &billingStore() { return m_billingStore; }

private:
    AuthStore m_authStore;
    SignIn m_signIn;
    BillingStore m_billingStore;
    platform::Task m_refresh;
    platform::Task m_watch; // of the keychain
};

} // namespace nivora
