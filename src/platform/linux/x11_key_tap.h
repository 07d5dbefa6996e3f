#pragma once

#include "platform/keys.h"
#include "platform_linux/x11_server_clock.h"
#include "x11_keyboard.h"
#include "x11_own_input.h"

namespace nivora::linuxdesktop {

// Watches the keyboard through XInput's raw events. They come without repeats,
// whichever window has the focus and whoever has grabbed the keyboard, with one
// exception: a client that holds a grab on the root window itself gets none. The
// chord is therefore reserved on a connection of its own (see X11HotKey).
//
// Only releases of modifiers matter, but they are asked for all the time: to ask
// once a modifier is down would miss the end of a short tap.
class X11KeyTap final : public platform::KeyEventTap, private X11EventHandler
{
public:
    X11KeyTap(X11Connection &connection, X11Keyboard &keyboard, X11OwnInput &ownInput);

    bool start(std::function<void(const platform::KeyEvent &)> handler) override;

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    void report(xcb_keycode_t code, std::chrono::milliseconds time);
    void forgetLostReleases(xcb_keycode_t pressed);

    X11Keyboard &m_keyboard;
    X11OwnInput &m_ownInput;
    X11ServerClock m_clock;
    X11Keyboard::KeySet m_shiftsDown; // as far as the events tell
    std::function<void(const platform::KeyEvent &)> m_handler;
};

} // namespace nivora::linuxdesktop
