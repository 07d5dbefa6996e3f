#pragma once

#include "platform/secret.h"

#include <QString>

#include <tuple>

namespace nivora::linuxdesktop {

struct SecretName
{
    QString service;
    QString account;

    bool operator<(const SecretName &other) const
    {
        return std::tie(service, account) < std::tie(other.service, other.account);
    }
};

// The session's keyring, spoken to with blocking calls: an object belongs to one
// thread that is not the main thread, from its construction to its end. A keyring or
// bus that went away is looked for anew by the next call.
class Keyring
{
public:
    enum class Outcome {
        Done,
        Absent,
        Locked,      // or there is no keyring to put a new item into yet
        Unavailable, // no bus, no keyring, or it refused
        TimedOut,    // it is there but did not answer within D-Bus's own bound
    };

    virtual ~Keyring() = default;

    // None of these waits for the user.
    virtual Outcome read(const SecretName &name, platform::SecretBytes &secret) = 0;
    virtual Outcome write(const SecretName &name, const platform::SecretBytes &secret) = 0;
    virtual Outcome remove(const SecretName &name) = 0;

    // Delivers what the bus has sent unasked since the last call.
    virtual void handlePending() = 0;

    // Unlocks the default keyring and all items of `service`; makes a default
    // keyring if `create` is set and there is none. The keyring shows its dialogs,
    // and the call returns when the user has answered, when the keyring has gone, or
    // when it is cancelled: for a thread of its own. True if everything is open now.
    virtual bool unlock(const QString &service, bool create) = 0;

    // From any thread: ends every call early, those to come as well.
    virtual void cancel() = 0;
};

// What the library exports under the name nivoraMakeKeyring. The result is the caller's.
using MakeKeyring = Keyring *(*)();

} // namespace nivora::linuxdesktop
