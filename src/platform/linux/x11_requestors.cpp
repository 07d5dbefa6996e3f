#include "x11_requestors.h"

#include <QTimer>

namespace nivora::linuxdesktop {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 30s;
constexpr std::size_t mostAbandoned = 64;

} // namespace

X11Requestors::X11Requestors(X11Connection &connection)
    : X11EventHandler(connection)
{
}

X11Requestors::~X11Requestors()
{
    while (!m_abandoned.empty())
        destroy(m_abandoned.front());
}

xcb_window_t X11Requestors::create()
{
    return connection().createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
}

void X11Requestors::retire(xcb_window_t window, bool answered)
{
    m_abandoned.push_back(window);
    if (answered) {
        destroy(window);
        return;
    }
    if (m_abandoned.size() > mostAbandoned)
        destroy(m_abandoned.front());
    QTimer::singleShot(patience, this, [this, window] { destroy(window); });
}

void X11Requestors::handleEvent(const xcb_generic_event_t &event)
{
    if (m_abandoned.empty() || eventType(event) != XCB_PROPERTY_NOTIFY)
        return;
    const auto &notify = eventAs<xcb_property_notify_event_t>(event);
    // Deleting a piece asks for the next one, until the owner is done.
    if (notify.state == XCB_PROPERTY_NEW_VALUE &&
        std::find(m_abandoned.begin(), m_abandoned.end(), notify.window) != m_abandoned.end())
        xcb_delete_property(connection().xcb(), notify.window, notify.atom);
}

void X11Requestors::destroy(xcb_window_t window)
{
    if (std::erase(m_abandoned, window) > 0) {
        xcb_destroy_window(connection().xcb(), window);
        connection().flush();
    }
}

} // namespace nivora::linuxdesktop
