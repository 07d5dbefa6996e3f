#pragma once

#include "secret_glib.h"

#include "platform/secret.h"

#include <QString>

#include <tuple>

typedef struct _SecretService SecretService;

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
// thread that is not the main thread. Nothing here waits for the user. A keyring or bus that went
// away is looked for anew by the next call.
class SecretKeyring
{
public:
    enum class Outcome {
        Done,
        Absent,
        Locked,      // or there is no keyring to put a new item into yet
        Unavailable, // no bus, no keyring, or it refused
        TimedOut,    // it is there but did not answer within D-Bus's own bound
    };

    // Borrows `cancellable`, which ends every call early.
    explicit SecretKeyring(GCancellable *cancellable)
        : m_cancellable(cancellable)
    {
    }

    Outcome connect();
    Outcome read(const SecretName &name, platform::SecretBytes &secret);
    Outcome write(const SecretName &name, const platform::SecretBytes &secret);
    Outcome remove(const SecretName &name);

private:
    template<typename Call>
    Outcome attempt(Call &&call);

    void disconnect();

    GCancellable *m_cancellable;
    GlibPtr<GDBusConnection> m_bus;
    GlibPtr<SecretService> m_service;
};

} // namespace nivora::linuxdesktop
