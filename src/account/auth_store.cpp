#include "account/auth_store.h"

#include "core/auth_service.h"
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

bool AuthStore::signIn(const AuthSession &session)
{
    const QString account = KeychainStore::sessionTokenAccount();
    m_keychain.write(account, session.token);
    if (m_keychain.read(account) != session.token)
        return false;
    m_email = session.email;
    m_preferences.set(emailKey, m_email);
    Q_EMIT changed();
    return true;
}

void AuthStore::signOut()
{
    m_keychain.write(KeychainStore::sessionTokenAccount(), std::nullopt);
    m_email.clear();
    m_preferences.remove(emailKey);
    Q_EMIT changed();
}

} // namespace nivora
