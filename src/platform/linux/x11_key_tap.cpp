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
        watch(false);
        // Events arrive from now on.
        if (!connection().synchronise())
            return false;
    }
    m_handler = std::move(handler);
    return true;
}

void X11KeyTap::watch(bool releases)
{
    m_watchesReleases = releases;
    watchRawInput(connection(), XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS |
                                    (releases ? XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE : 0));
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
    if (raw->kind == X11RawInput::Kind::KeyRelease) {
        // Our own releases count here too: the key is up for every program.
        if (own)
            m_modifiersDown.reset(code);
        else
            release(code, time);
    } else if (!own && m_keyboard.isModifier(code)) {
        pressModifier(code, time);
    } else if (!own) {
        report(code, time);
    }
    if (m_watchesReleases && m_modifiersDown.none())
        watch(false);
}

void X11KeyTap::pressModifier(xcb_keycode_t code, std::chrono::milliseconds time)
{
    if (!m_watchesReleases)
        watch(true);
    // A release may have come before it was asked for, or have been lost, for
    // instance while the display was switched to another user. Such a key must
    // not stick.
    const auto pressed = m_keyboard.pressedKeys();
    for (std::size_t each = 0; pressed && each < pressed->size(); ++each) {
        if (!pressed->test(each))
            release(xcb_keycode_t(each), time);
    }
    m_modifiersDown.set(code);
    report(code, time); // may take its time and see other events
    if (pressed && !pressed->test(code))
        release(code, time);
}

void X11KeyTap::release(xcb_keycode_t code, std::chrono::milliseconds time)
{
    if (!m_modifiersDown.test(code))
        return;
    m_modifiersDown.reset(code);
    report(code, time);
}

void X11KeyTap::report(xcb_keycode_t code, std::chrono::milliseconds time)
{
    KeyEvent out;
    out.kind =
        m_keyboard.isModifier(code) ? KeyEvent::Kind::ModifiersChanged : KeyEvent::Kind::KeyDown;
    out.key = m_keyboard.shiftSide(code);
    out.shiftHeld = isAnyShiftDown();
    out.time = time;
    const auto handler = m_handler; // it may be replaced by the call
    handler(out);
}

bool X11KeyTap::isAnyShiftDown()
{
    for (std::size_t code = 0; m_modifiersDown.any() && code < m_modifiersDown.size(); ++code) {
        if (m_modifiersDown.test(code) &&
            m_keyboard.shiftSide(xcb_keycode_t(code)) != KeyEvent::Key::Other)
            return true;
    }
    return false;
}

} // namespace nivora::linuxdesktop
