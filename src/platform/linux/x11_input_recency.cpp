#include "x11_input_recency.h"

#include "x11_raw_input.h"

#include <QCoreApplication>

#include <xcb/xinput.h>

#include <algorithm>

namespace nivora::linuxdesktop {

namespace {

// Of a press at once are told its event and whom it was for, in either order: as many
// as can come meanwhile.
constexpr std::size_t mostRemembered = 32;

void remember(std::deque<xcb_timestamp_t> &times, xcb_timestamp_t time)
{
    times.push_back(time);
    if (times.size() > mostRemembered)
        times.pop_front();
}

} // namespace

X11InputRecency::X11InputRecency(X11Connection &connection, X11Keyboard &keyboard)
    : X11EventHandler(connection)
    , m_keyboard(keyboard)
{
    // All the time: to begin only when there is a selection would miss what is
    // pressed right after it, and then a text that is selected no more would pass
    // for one that is.
    watchUserInput(connection);
    if (auto *application = QCoreApplication::instance())
        application->installNativeEventFilter(this);
}

X11InputRecency::~X11InputRecency()
{
    if (auto *application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

void X11InputRecency::disregard(xcb_timestamp_t press)
{
    // Told by another connection, so it may come before the event or after it.
    remember(m_disregarded, press);
    std::erase(m_presses, press);
}

bool X11InputRecency::pressedAfter(std::optional<xcb_timestamp_t> time)
{
    // To see an event again once the event loop hands it out changes nothing.
    connection().synchronise();
    const auto &pending = connection().pendingEvents();
    for (std::size_t i = 0; i < pending.size(); ++i) // which may grow
        handleEvent(*pending[i]);
    return !m_presses.empty() && (!time || isLater(m_presses.back(), *time));
}

void X11InputRecency::handleEvent(const xcb_generic_event_t &event)
{
    const auto raw = rawInput(connection(), event);
    if (!raw || raw->kind == X11RawInput::Kind::KeyRelease ||
        std::ranges::count(m_disregarded, raw->time) ||
        (!m_presses.empty() && !isLater(raw->time, m_presses.back())))
        return;
    constexpr uint32_t firstWheel = 4; // up, down, left, right
    constexpr uint32_t lastWheel = 7;
    const bool counts = raw->kind == X11RawInput::Kind::ButtonPress
                            ? raw->code < firstWheel || raw->code > lastWheel
                            : !m_keyboard.isModifier(static_cast<xcb_keycode_t>(raw->code));
    if (counts)
        remember(m_presses, raw->time);
}

bool X11InputRecency::nativeEventFilter(const QByteArray &kind, void *event, qintptr *)
{
    if (kind != "xcb_generic_event_t")
        return false;
    const auto &any = *static_cast<const xcb_generic_event_t *>(event);
    if (eventType(any) == XCB_KEY_PRESS || eventType(any) == XCB_BUTTON_PRESS) {
        disregard(eventAs<xcb_key_press_event_t>(any).time); // both have one layout
    } else if (eventType(any) == XCB_GE_GENERIC) {
        const auto &press = eventAs<xcb_input_button_press_event_t>(any);
        const auto *extension = xcb_get_extension_data(connection().xcb(), &xcb_input_id);
        if (extension && press.extension == extension->major_opcode &&
            press.event_type == XCB_INPUT_BUTTON_PRESS)
            disregard(press.time);
    }
    return false;
}

} // namespace nivora::linuxdesktop
