#pragma once

#include <QObject>
#include <QString>

namespace nivora {

class KeychainStore;
struct AuthSession;

namespace platform {
class Preferences;
}

// Who is signed in to the cloud. Being signed in means exactly that the keychain
// holds a session token; the e-mail address is text to show. The token is kept
// nowhere else.
class AuthStore : public QObject
{
    Q_OBJECT

public:
    // Forgets a stored address that has outlived its token.
    AuthStore(platform::Preferences &preferences, KeychainStore &keychain);

    // Asks the keychain each time: at most 250 ms.
    bool isSignedIn() const;

    QString email() const { return m_email; } // empty when there is none to show

    // False, with nothing else changed, when the keychain does not take the token.
    bool signIn(const AuthSession &session);

    // Forgets token and address. Nothing is sent to the server.
    void signOut();

Q_SIGNALS:
    // After signIn() and signOut().
    void changed();

private:
    platform::Preferences &m_preferences;
    KeychainStore &m_keychain;
    QString m_email;
};

} // namespace nivora
