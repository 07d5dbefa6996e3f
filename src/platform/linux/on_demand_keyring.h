#pragma once

#include "platform_linux_keyring/keyring.h"

#include <memory>
#include <mutex>

namespace nivora::linuxdesktop {

// A keyring whose module is loaded when there is something to read or to write. Until
// then the session bus is asked each time whether the keyring has any item of the
// service: one call, in which no secret travels, for at most 250 ms. A keyring that does
// not answer that is left to the module.
class OnDemandKeyring final : public Keyring
{
public:
    // `module` is a file.
    explicit OnDemandKeyring(QString module);
    ~OnDemandKeyring() override;

    Outcome read(const SecretName &name, platform::SecretBytes &secret) override;
    Outcome write(const SecretName &name, const platform::SecretBytes &secret) override;
    Outcome remove(const SecretName &name) override;
    void handlePending() override;
    bool unlock(const QString &service, bool create) override;
    void cancel() override;

private:
    Keyring &load();

    const QString m_module;
    std::mutex m_mutex;                 // for what cancel() touches
    std::unique_ptr<Keyring> m_keyring; // absent until it is loaded
    bool m_cancelled = false;
};

} // namespace nivora::linuxdesktop
