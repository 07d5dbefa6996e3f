#include "account/auth_store.h"

#include "stores/keychain_store.h"

#include "platform/preferences.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

const auto emailKey = u"accountEmail"_s;

} // namespace

AuthStore::AuthStore(platform::Preferences &preferences, KeychainStore &keychain)
    : m_preferences(preferences)
    , m_keychain(keychain)
{
    if (isSignedIn())
        m_email = m_preferences.string(emailKey).value_or(QString());
    else if (m_preferences.value(emailKey))
        m_preferences.remove(emailKey);
}

bool AuthStore::isSignedIn() const
{
    return !m_keychain.read(KeychainStore::sessionTokenAccount()).value_or(QString()).isEmpty();
}

} // namespace nivora
