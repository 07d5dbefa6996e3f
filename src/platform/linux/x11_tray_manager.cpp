#include "x11_tray_manager.h"

#include <xcb/xfixes.h>

namespace nivora::linuxdesktop {

X11TrayManager::X11TrayManager(X11Connection &connection)
    : X11EventHandler(connection)
{
}

bool X11TrayManager::isPresent() const
{
    if (!connection().isValid())
        return false;
    const auto owner = connection().reply<xcb_get_selection_owner_reply>(
        xcb_get_selection_owner(connection().xcb(), connection().atom(X11Atom::NetSystemTrayS0)));
    return owner && owner->owner != XCB_NONE;
}

void X11TrayManager::watch(std::function<void()> changed)
{
    m_changed = std::move(changed);
    if (!connection().hasExtension(xcb_xfixes_id))
        return;
    const uint32_t events = m_changed
                                ? XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE
                                : 0;
    xcb_discard_reply(connection().xcb(),
                      xcb_xfixes_query_version(connection().xcb(), 2, 0).sequence);
    xcb_xfixes_select_selection_input(connection().xcb(), connection().root(),
                                      connection().atom(X11Atom::NetSystemTrayS0), events);
    connection().flush();
}

void X11TrayManager::handleEvent(const xcb_generic_event_t &event)
{
    if (!m_changed)
        return;
    const auto *extension = xcb_get_extension_data(connection().xcb(), &xcb_xfixes_id);
    if (eventType(event) == extension->first_event + XCB_XFIXES_SELECTION_NOTIFY &&
        eventAs<xcb_xfixes_selection_notify_event_t>(event).selection ==
            connection().atom(X11Atom::NetSystemTrayS0))
        m_changed();
}

} // namespace nivora::linuxdesktop
