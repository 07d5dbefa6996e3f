#include "x11_key_synthesizer.h"

#include "x11_sticky_modifiers.h"

#include <xcb/xtest.h>

#include <optional>

namespace nivora::linuxdesktop {

X11KeySynthesizer::X11KeySynthesizer(X11Connection &connection, X11Keyboard &keyboard,
                                     X11OwnInput &ownInput)
    : m_connection(connection)
    , m_keyboard(keyboard)
    , m_ownInput(ownInput)
{
}

bool X11KeySynthesizer::press(const platform::KeyChord &chord)
{
    if (!m_connection.hasExtension(xcb_test_id))
        return false;
    std::vector<xcb_keycode_t> modifiers;
    for (const auto modifier :
         {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        if (!chord.modifiers.testFlag(modifier))
            continue;
        const auto code = m_keyboard.modifierKey(modifier);
        if (!code)
            return false;
        modifiers.push_back(*code);
    }
    // Without knowing what is held, anything might arrive.
    const auto held = m_keyboard.pressedKeys();
    if (!held)
        return false;

    auto key = m_keyboard.keyFor(chord.key, m_keyboard.currentLayout());
    if (!key)
        key = m_keyboard.addKey(chord.key);
    if (!key)
        return false;

    for (std::size_t code = 0; code < held->size(); ++code) {
        if (held->test(code))
            fake(static_cast<xcb_keycode_t>(code), false);
    }
    std::optional<X11StickyModifiers> setAside;
    if (const auto sticky = uint8_t(m_keyboard.state() & m_keyboard.chordModifiers()))
        setAside.emplace(m_connection.displayName(), sticky);
    for (const xcb_keycode_t code : modifiers)
        fake(code, true);
    fake(*key, true);
    fake(*key, false);
    for (auto code = modifiers.rbegin(); code != modifiers.rend(); ++code)
        fake(*code, false);
    // So that what the caller does next comes after.
    return m_connection.synchronise();
}

void X11KeySynthesizer::fake(xcb_keycode_t code, bool press)
{
    const auto cookie =
        xcb_test_fake_input(m_connection.xcb(), press ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code,
                            XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    m_ownInput.expect(cookie.sequence, code, press);
}

} // namespace nivora::linuxdesktop
