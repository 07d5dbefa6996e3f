#include "keyring_module.h"

#include "platform/log.h"
#include "session_bus.h"

#include <QLibrary>

namespace nivora::linuxdesktop {

namespace {

class NoKeyring final : public Keyring
{
public:
    Outcome read(const SecretName &, platform::SecretBytes &) override
    {
        return Outcome::Unavailable;
    }
    Outcome write(const SecretName &, const platform::SecretBytes &) override
    {
        return Outcome::Unavailable;
    }
    Outcome remove(const SecretName &) override { return Outcome::Unavailable; }
    void handlePending() override {}
    bool unlock(const QString &, bool) override { return false; }
    void cancel() override {}
};

} // namespace

std::unique_ptr<Keyring> loadKeyring(const QString &module)
{
    if (!isSessionBusNamed())
        return std::make_unique<NoKeyring>();
    QLibrary library(module);
    // GLib's threads outlive their users.
    library.setLoadHints(QLibrary::PreventUnloadHint);
    if (const auto make = reinterpret_cast<MakeKeyring>(library.resolve("nivoraMakeKeyring")))
        return std::unique_ptr<Keyring>(make());
    qCWarning(log::app).noquote() << "No keyring:" << library.errorString();
    return std::make_unique<NoKeyring>();
}

} // namespace nivora::linuxdesktop
