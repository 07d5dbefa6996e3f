#pragma once

#include "platform_linux_keyring/keyring.h"

#include <memory>

namespace nivora::linuxdesktop {

// The keyring of the session bus that the environment names at this moment.
std::unique_ptr<Keyring> makeLibsecretKeyring();

} // namespace nivora::linuxdesktop
