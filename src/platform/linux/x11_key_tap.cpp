#include "x11_key_tap.h"

#include <xcb/xinput.h>

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
    if (!m_handler) {
        if (!hasRawInput(connection()))
            return false;
        watchRawInput(connection(), XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                        XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
        // Events arrive from now on.
        if (!connection().synchronise())
            return false;
    }
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
    const bool press = raw->kind == X11RawInput::Kind::KeyPress;
    const KeyEvent::Key side = m_keyboard.shiftSide(code);
    // Our own releases count here too: the key is up for every program.
    if (side != KeyEvent::Key::Other)
        m_shiftsDown.set(code, press);
    if (m_ownInput.take(*raw))
        return;
    const bool modifier = m_keyboard.isModifier(code);
    if (!modifier && !press)
        return;

    KeyEvent out;
    out.kind = modifier ? KeyEvent::Kind::ModifiersChanged : KeyEvent::Kind::KeyDown;
    out.key = side;
    out.shiftHeld = (press && side != KeyEvent::Key::Other) || anyShiftHeld();
    out.time = m_clock.widen(raw->time);
    const auto handler = m_handler; // it may be replaced by the call
    handler(out);
}

bool X11KeyTap::anyShiftHeld()
{
    if (m_shiftsDown.none())
        return false;
    // A release can be lost, for instance while the display is switched to
    // another user. Such a key must not stick.
    if (const auto pressed = m_keyboard.pressedKeys())
        m_shiftsDown &= *pressed;
    return m_shiftsDown.any();
}

} // namespace nivora::linuxdesktop
