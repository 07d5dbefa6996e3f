#pragma once

#include "secret_glib.h"

#include <QString>

namespace nivora::linuxdesktop {

// Unlocks the default keyring and all items of `service`; makes a default
// keyring if `create` is set and there is none. The keyring shows its dialogs,
// and the call returns when the user has answered, when the keyring has gone, or
// when it is cancelled: for a thread of its own, with a GlibThreadContext.
// True if everything is open now.
bool unlockKeyring(const QString &service, bool create, GCancellable *cancellable);

} // namespace nivora::linuxdesktop
