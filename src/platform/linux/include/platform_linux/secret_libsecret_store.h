#pragma once

#include "platform/secret_store.h"
#include "platform/task.h"

#include <memory>

namespace nivora::linuxdesktop {

// Secrets in the session's keyring, as items labelled "Nivora" with the
// attributes "service" and "account".
//
// One thread talks to the keyring, and loads the module that holds libsecret when there
// is an item to read, or one to write. A read() waits for that thread at most 90 ms, and
// all that wait in vain for one answer 240 ms together, each in a turn of its own of the
// event loop; without waiting, secrets are unknown until the keyring answers again. Without
// the module, a session bus or a keyring they are unknown in milliseconds.
//
// A locked keyring is asked to unlock once, which may show the user its dialog.
// What was written meanwhile is stored when it opens. The destructor gives
// unfinished writes 250 ms.
class LibsecretStore final : public platform::SecretStore
{
public:
    // Speaks to the session bus that the environment names at the first call.
    // `module` is a file.
    explicit LibsecretStore(const QString &module = defaultModule());
    ~LibsecretStore() override;

    // Where an installation has it, seen from the program.
    static QString defaultModule();

    platform::SecretAnswer read(const QString &service, const QString &account) override;
    void write(const QString &service, const QString &account,
               const platform::SecretBytes &secret) override;
    void remove(const QString &service, const QString &account) override;

private:
    class Worker;
    std::unique_ptr<Worker> m_worker;
    platform::Task m_hasWaited; // in vain, in this turn of the event loop
};

} // namespace nivora::linuxdesktop
