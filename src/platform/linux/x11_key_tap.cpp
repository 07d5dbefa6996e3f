#include "x11_key_tap.h"

namespace nivora::linuxdesktop {

using platform::KeyEvent;

X11KeyTap::X11KeyTap(X11Connection &connection, X11Keyboard &keyboard, X11OwnInput &ownInput)
    : X11EventHandler(connection)
    , m_keyboard(keyboard)
    , m_ownInput(ownInput)
{
}

bool X11KeyTap::start(std::function<void(const KeyEvent &)> handler)
{
    // Events arrive from now on.
    if (!m_handler && !(watchUserInput(connection()) && connection().synchronise()))
        return false;
    m_handler = std::move(handler);
    return true;
}

void X11KeyTap::handleEvent(const xcb_generic_event_t &event)
{
    if (!m_handler)
        return;
    const auto raw = rawInput(connection(), event);
    if (!raw || raw->kind == X11RawInput::Kind::ButtonPress || raw->code > 0xff)
        return;
    const auto code = static_cast<xcb_keycode_t>(raw->code);
    const auto time = m_clock.widen(raw->time);
    const bool own = m_ownInput.take(*raw);
    const bool isPress = raw->kind == X11RawInput::Kind::KeyPress;
    if (m_keyboard.shiftSide(code) != KeyEvent::Key::Other) {
        if (isPress && !own)
            forgetLostReleases(code);
        // Our own releases count here too: the key is up for every program.
        if (!isPress || !own)
            m_shiftsDown.set(code, isPress);
    }
    if (!own && (isPress || m_keyboard.isModifier(code)))
        report(code, time);
}

void X11KeyTap::forgetLostReleases(xcb_keycode_t pressed)
{
    // One can be lost, for instance while the display is switched to another user.
    // With such a key taken for held, every single tap of the other Shift would
    // count as two presses.
    auto others = m_shiftsDown;
    others.reset(pressed);
    if (others.none())
        return;
    if (const auto down = m_keyboard.pressedKeys())
        m_shiftsDown &= *down;
}

void X11KeyTap::report(xcb_keycode_t code, std::chrono::milliseconds time)
{
    KeyEvent out;
    out.kind =
        m_keyboard.isModifier(code) ? KeyEvent::Kind::ModifiersChanged : KeyEvent::Kind::KeyDown;
    out.key = m_keyboard.shiftSide(code);
    out.shiftHeld = m_shiftsDown.any();
    out.time = time;
    const auto handler = m_handler; // it may be replaced by the call
    handler(out);
}

} // namespace nivora::linuxdesktop
