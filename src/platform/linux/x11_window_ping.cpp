#include "x11_window_ping.h"

namespace nivora::linuxdesktop {

X11WindowPing::X11WindowPing(X11Connection &connection, xcb_window_t window,
                             std::chrono::milliseconds deadline, std::function<void(bool)> done)
    : X11EventHandler(connection)
    , m_window(window)
    , m_done(std::move(done))
{
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    const bool taken = isTaken();
    connect(&m_deadline, &QTimer::timeout, this,
            [this, taken] { finish([&] { m_done(!taken); }); });
    m_deadline.start(taken ? deadline : std::chrono::milliseconds::zero());
    if (taken)
        ask();
}

bool X11WindowPing::isTaken()
{
    constexpr uint32_t mostProtocols = 64;
    const auto protocols = connection().reply<xcb_get_property_reply>(
        xcb_get_property(connection().xcb(), 0, m_window, connection().atom(X11Atom::WmProtocols),
                         XCB_ATOM_ATOM, 0, mostProtocols));
    if (!protocols || protocols->format != 32)
        return false;
    const auto *first = static_cast<const xcb_atom_t *>(xcb_get_property_value(protocols.get()));
    const auto *end = first + xcb_get_property_value_length(protocols.get()) / 4;
    return std::find(first, end, connection().atom(X11Atom::NetWmPing)) != end;
}

void X11WindowPing::ask()
{
    watchAnswers(true);
    m_mark = connection().serverTime();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_window;
    message.type = connection().atom(X11Atom::WmProtocols);
    message.data.data32[0] = connection().atom(X11Atom::NetWmPing);
    message.data.data32[1] = m_mark;
    message.data.data32[2] = m_window;
    xcb_send_event(connection().xcb(), 0, m_window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message));
    connection().flush();
}

// The answer is the question, sent on to the root window. Listening there brings
// news of every window of the session: only for as long as a question is open.
void X11WindowPing::watchAnswers(bool watch)
{
    m_watching = watch;
    // GTK sends its answers under the one mask, Qt under the other.
    const uint32_t mask = watch
                              ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY
                              : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection().xcb(), connection().root(), XCB_CW_EVENT_MASK, &mask);
    connection().flush();
}

void X11WindowPing::handleEvent(const xcb_generic_event_t &event)
{
    if (!m_watching || eventType(event) != XCB_CLIENT_MESSAGE)
        return;
    const auto &message = eventAs<xcb_client_message_event_t>(event);
    const bool ours = message.window == connection().root() && message.format == 32 &&
                      message.type == connection().atom(X11Atom::WmProtocols) &&
                      message.data.data32[0] == connection().atom(X11Atom::NetWmPing) &&
                      message.data.data32[1] == m_mark && message.data.data32[2] == m_window;
    if (ours)
        finish([this] { m_done(true); });
}

void X11WindowPing::stop()
{
    m_deadline.stop();
    if (m_watching)
        watchAnswers(false);
}

} // namespace nivora::linuxdesktop
