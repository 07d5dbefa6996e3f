#pragma once

#include "x11_keyboard.h"

#include <optional>

namespace nivora::linuxdesktop {

// When the user last pressed a mouse button or a key that is no modifier: after
// that, what a program offers as selected may be selected no more. Turning the
// wheel scrolls and selects nothing, so it does not count.
class X11InputRecency final : private X11EventHandler
{
public:
    X11InputRecency(X11Connection &connection, X11Keyboard &keyboard);

    // The press at this time was the chord that calls this program. It leaves
    // selections as they are.
    void disregard(xcb_timestamp_t press);

    // Whether something was pressed after `time`; when it is absent, whether
    // anything has been pressed at all. Waits until all has been seen that the
    // server saw before this call.
    bool pressedAfter(std::optional<xcb_timestamp_t> time);

private:
    void handleEvent(const xcb_generic_event_t &event) override;

    X11Keyboard &m_keyboard;
    std::optional<xcb_timestamp_t> m_latest;
    std::optional<xcb_timestamp_t> m_before; // the press before the latest
    std::optional<xcb_timestamp_t> m_disregarded;
};

} // namespace nivora::linuxdesktop
