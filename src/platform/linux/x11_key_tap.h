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
// Releases matter of modifiers alone, so they are asked for while one is down:
// ordinary typing wakes this program once a key instead of twice.
class X11KeyTap final : public platform::KeyEventTap, private X11EventHandler
{
public:
    X11KeyTap(X11Connection &connection, X11Keyboard &keyboard, X11OwnInput &ownInput);

    bool start(std::function<void(const platform::KeyEvent &)> handler) override;

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    void watch(bool releases);
    void report(xcb_keycode_t code, std::chrono::milliseconds time);
    void pressModifier(xcb_keycode_t code, std::chrono::milliseconds time);
    void release(xcb_keycode_t code, std::chrono::milliseconds time);
    bool isAnyShiftDown();

    X11Keyboard &m_keyboard;
    X11OwnInput &m_ownInput;
    X11ServerClock m_clock;
    X11Keyboard::KeySet m_modifiersDown; // as far as the events tell
    bool m_watchesReleases = false;
    std::function<void(const platform::KeyEvent &)> m_handler;
};

} // namespace nivora::linuxdesktop
