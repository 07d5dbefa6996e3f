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
    // Settles who is signed in, if the keychain answers.
    AuthStore(platform::Preferences &preferences, KeychainStore &keychain);

    // Takes up the stored address, or forgets one that has outlived its token. A
    // keychain that does not answer, or is locked, leaves everything as it is and
    // nobody signed in for now: to be called again where it matters. True if this
    // call settled it; once it is, the keychain is not asked.
    bool settle();

    // Asks the keychain each time: at most 100 ms. While it does not answer, what it
    // said last; false before the first answer.
    bool isSignedIn() const;

    QString email() const { return m_email; } // empty when there is none to show

    // False, with nothing else changed, when the keychain does not take the token.
    bool signIn(const AuthSession &session);

    // Forgets token and address. Nothing is sent to the server.
    void signOut();

Q_SIGNALS:
    // After signIn() and signOut(), and when the keychain has answered at last.
    void changed();

private:
    platform::Preferences &m_preferences;
    KeychainStore &m_keychain;
    QString m_email;
    bool m_isSettled = false;
    mutable bool m_wasSignedIn = false; // by the last answer
};

} // namespace nivora
