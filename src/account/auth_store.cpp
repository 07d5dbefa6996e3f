#include "account/auth_store.h"

#include "core/auth_service.h"
#include "stores/keychain_store.h"

#include "platform/preferences.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

using Presence = KeychainStore::Presence;

namespace {

const auto emailKey = u"accountEmail"_s;

} // namespace

AuthStore::AuthStore(platform::Preferences &preferences, KeychainStore &keychain)
    : m_preferences(preferences)
    , m_keychain(keychain)
{
    settle();
}

bool AuthStore::settle()
{
    if (m_isSettled)
        return false;
    const auto presence = m_keychain.presence(KeychainStore::sessionTokenAccount());
    if (presence == Presence::Unknown)
        return false;
    m_isSettled = true;
    m_wasSignedIn = presence == Presence::Stored;
    if (m_wasSignedIn)
        m_email = m_preferences.string(emailKey).value_or(QString());
    else if (m_preferences.value(emailKey))
        m_preferences.remove(emailKey);
    Q_EMIT changed();
    return true;
}

bool AuthStore::isSignedIn() const
{
    const auto presence = m_keychain.presence(KeychainStore::sessionTokenAccount());
    if (presence != Presence::Unknown)
        m_wasSignedIn = presence == Presence::Stored;
    return m_wasSignedIn;
}

bool AuthStore::signIn(const AuthSession &session)
{
    const QString account = KeychainStore::sessionTokenAccount();
    const platform::SecretText token(session.token);
    m_keychain.write(account, token);
    if (m_keychain.read(account) != token)
        return false;
    m_isSettled = true;
    m_wasSignedIn = true;
    m_email = session.email;
    m_preferences.set(emailKey, m_email);
    Q_EMIT changed();
    return true;
}

void AuthStore::signOut()
{
    m_keychain.write(KeychainStore::sessionTokenAccount(), std::nullopt);
    m_isSettled = true;
    m_wasSignedIn = false;
    m_email.clear();
    m_preferences.remove(emailKey);
    Q_EMIT changed();
}

} // namespace nivora
