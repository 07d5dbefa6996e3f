#pragma once

#include <QObject>
#include <QString>

namespace nivora {

class KeychainStore;

namespace platform {
class Preferences;
}

// Who is signed in to the cloud. Being signed in means exactly that the keychain
// holds a session token; the e-mail address is text to show.
class AuthStore : public QObject
{
    Q_OBJECT

public:
    // Forgets a stored address that has outlived its token.
    AuthStore(platform::Preferences &preferences, KeychainStore &keychain);

    // Asks the keychain each time.
    bool isSignedIn() const;

    QString email() const { return m_email; } // empty when there is none to show

private:
    platform::Preferences &m_preferences;
    KeychainStore &m_keychain;
    QString m_email;
};

} // namespace nivora
