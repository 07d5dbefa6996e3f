#include "session_bus.h"

#include <QFileInfo>

namespace nivora::linuxdesktop {

bool isSessionBusNamed()
{
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

} // namespace nivora::linuxdesktop
