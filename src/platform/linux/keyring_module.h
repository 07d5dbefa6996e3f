#pragma once

#include "platform_linux_keyring/keyring.h"

#include <memory>

namespace nivora::linuxdesktop {

// The keyring, by the module of this file, which then stays loaded: for a thread that
// may wait for the disk. One that has nothing to give where the module cannot be loaded
// or the environment names no session bus. Never null.
std::unique_ptr<Keyring> loadKeyring(const QString &module);

} // namespace nivora::linuxdesktop
