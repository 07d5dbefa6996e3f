#pragma once

#include "x11_connection.h"

#include <optional>

namespace nivora::linuxdesktop {

// A key or a mouse button that moved, whichever window it was meant for.
struct X11RawInput
{
    enum class Kind { KeyPress, KeyRelease, ButtonPress };

    Kind kind = Kind::KeyPress;
    uint32_t code = 0; // key code or button number
    xcb_timestamp_t time = 0;
    // The last request of ours that the server had taken up when it sent this.
    uint32_t sequence = 0;
};

// Whether the server has raw input. To be asked on each connection before the
// first watchRawInput().
bool hasRawInput(X11Connection &connection);

// Asks on this connection for everything that the user presses or releases on any
// keyboard and presses on any mouse, for all that follow it there: a connection
// has one selection. False where the server has no raw input.
bool watchUserInput(X11Connection &connection);

// Asks for the raw events in `mask` (XCB_INPUT_XI_EVENT_MASK_RAW_...) of all
// keyboards and pointers, in place of those of before; 0 for none.
void watchRawInput(X11Connection &connection, uint32_t mask);

// The event as raw input, absent if it is anything else.
std::optional<X11RawInput> rawInput(X11Connection &connection, const xcb_generic_event_t &event);

} // namespace nivora::linuxdesktop
