#pragma once

#include "platform/tray_hosts.h"

namespace nivora::linuxdesktop {

class X11TrayManager;

// Trays of both kinds: those that are reached over the session bus, as
// freedesktop.org's StatusNotifierItem tells, and those that embed windows.
class DesktopTrayHosts final : public platform::TrayHosts
{
public:
    // Borrows the manager.
    explicit DesktopTrayHosts(X11TrayManager &manager);

    // Asks the bus anew whenever somebody there may have become a host, at most
    // 2 s. One watch at a time.
    platform::Task watch(std::function<void(bool)> changed) override;

private:
    X11TrayManager &m_manager;
};

} // namespace nivora::linuxdesktop
