#pragma once

#include "secret_glib.h"

#include <initializer_list>

namespace nivora::linuxdesktop {

inline constexpr const char *secretServiceName = "org.freedesktop.secrets";

// The session bus; null when there is none.
GlibPtr<GDBusConnection> openSessionBus(GCancellable *cancellable);

// One method call, for an answer of this type; null when it fails. Takes over a
// floating `arguments`.
GlibPtr<GVariant> callBus(GDBusConnection *bus, GCancellable *cancellable, const char *name,
                          const char *path, const char *interface, const char *method,
                          GVariant *arguments, const char *answerType);

// Whether a keyring runs or would be started by a call. Asked of the bus itself,
// which answers at once where the keyring may not.
bool isKeyringInReach(GDBusConnection *bus, GCancellable *cancellable);

} // namespace nivora::linuxdesktop
