#include "x11_hand_over.h"

namespace nivora::linuxdesktop {

X11HandOver::X11HandOver(X11Connection &connection, xcb_window_t owner,
                         const std::vector<xcb_atom_t> &targets, std::chrono::milliseconds deadline,
                         std::function<void()> done)
    : X11EventHandler(connection)
    , m_owner(owner)
    , m_done(std::move(done))
{
    xcb_connection_t *c = connection.xcb();
    const xcb_atom_t managers = connection.atom(X11Atom::ClipboardManager);
    const auto manager =
        connection.reply<xcb_get_selection_owner_reply>(xcb_get_selection_owner(c, managers));
    const bool exists = manager && manager->owner != XCB_NONE;
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { end(); });
    m_deadline.start(exists ? deadline : std::chrono::milliseconds::zero());
    if (!exists)
        return;
    // The property says what is to be kept.
    const xcb_atom_t property = connection.atom(X11Atom::Transfer);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, owner, property, XCB_ATOM_ATOM, 32,
                        targets.size(), targets.data());
    xcb_convert_selection(c, owner, managers, connection.atom(X11Atom::SaveTargets), property,
                          connection.serverTime());
    connection.flush();
}

void X11HandOver::handleEvent(const xcb_generic_event_t &event)
{
    if (eventType(event) != XCB_SELECTION_NOTIFY)
        return;
    const auto &notify = eventAs<xcb_selection_notify_event_t>(event);
    if (notify.requestor == m_owner &&
        notify.selection == connection().atom(X11Atom::ClipboardManager))
        end();
}

void X11HandOver::end()
{
    m_deadline.stop();
    // The call may destroy this object.
    if (const auto done = std::exchange(m_done, {}))
        done();
}

} // namespace nivora::linuxdesktop
