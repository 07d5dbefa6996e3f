#pragma once

#include "x11_connection.h"

#include <functional>

namespace nivora::linuxdesktop {

// Whoever embeds tray icons on the connection's screen, as freedesktop.org's
// System Tray Protocol tells: the owner of a selection.
class X11TrayManager final : private X11EventHandler
{
public:
    explicit X11TrayManager(X11Connection &connection);

    // Asks the server: at most X11Connection::waitLimit.
    bool isPresent() const;

    // Calls back when one has come or gone, from the event loop. Replaces the
    // callback before; none ends it.
    void watch(std::function<void()> changed);

private:
    void handleEvent(const xcb_generic_event_t &event) override;

    std::function<void()> m_changed;
};

} // namespace nivora::linuxdesktop
