#include "x11_input_recency.h"

#include "x11_raw_input.h"

namespace nivora::linuxdesktop {

X11InputRecency::X11InputRecency(X11Connection &connection, X11Keyboard &keyboard)
    : X11EventHandler(connection)
    , m_keyboard(keyboard)
{
    // All the time: to begin only when there is a selection would miss what is
    // pressed right after it, and then a text that is selected no more would pass
    // for one that is.
    watchUserInput(connection);
}

void X11InputRecency::disregard(xcb_timestamp_t press)
{
    // Told by another connection, so it may come before the event or after it.
    m_disregarded = press;
    if (m_latest == press)
        m_latest = m_before;
}

bool X11InputRecency::pressedAfter(std::optional<xcb_timestamp_t> time)
{
    // To see an event again once the event loop hands it out changes nothing.
    connection().synchronise();
    const auto &pending = connection().pendingEvents();
    for (std::size_t i = 0; i < pending.size(); ++i) // which may grow
        handleEvent(*pending[i]);
    return m_latest && (!time || isLater(*m_latest, *time));
}

void X11InputRecency::handleEvent(const xcb_generic_event_t &event)
{
    const auto raw = rawInput(connection(), event);
    if (!raw || raw->kind == X11RawInput::Kind::KeyRelease || raw->time == m_disregarded ||
        (m_latest && !isLater(raw->time, *m_latest)))
        return;
    constexpr uint32_t firstWheel = 4; // up, down, left, right
    constexpr uint32_t lastWheel = 7;
    const bool counts = raw->kind == X11RawInput::Kind::ButtonPress
                            ? raw->code < firstWheel || raw->code > lastWheel
                            : !m_keyboard.isModifier(static_cast<xcb_keycode_t>(raw->code));
    if (!counts)
        return;
    m_before = m_latest;
    m_latest = raw->time;
}

} // namespace nivora::linuxdesktop
