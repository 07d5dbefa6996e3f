#pragma once

#include "x11_keyboard.h"

#include <QAbstractNativeEventFilter>

#include <deque>
#include <optional>

namespace nivora::linuxdesktop {

// When the user last pressed a mouse button or a key that is no modifier: after
// that, what a program offers as selected may be selected no more. Turning the
// wheel scrolls and selects nothing, so it does not count, and neither does what is
// pressed in our own windows.
class X11InputRecency final : private X11EventHandler, private QAbstractNativeEventFilter
{
public:
    X11InputRecency(X11Connection &connection, X11Keyboard &keyboard);
    ~X11InputRecency() override;

    // The press at this time leaves other programs' selections as they are, like that
    // of the chord that calls this program.
    void disregard(xcb_timestamp_t press);

    // Whether something was pressed after `time`; when it is absent, whether
    // anything has been pressed at all. Waits until all has been seen that the
    // server saw before this call.
    bool pressedAfter(std::optional<xcb_timestamp_t> time);

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    // What the toolkit hands out to our windows.
    bool nativeEventFilter(const QByteArray &kind, void *event, qintptr *result) override;

    X11Keyboard &m_keyboard;
    std::deque<xcb_timestamp_t> m_presses; // some of the latest, in order
    std::deque<xcb_timestamp_t> m_disregarded;
};

} // namespace nivora::linuxdesktop
