#pragma once

#include "platform/keys.h"
#include "x11_keyboard.h"
#include "x11_own_input.h"

namespace nivora::linuxdesktop {

// Presses keys through the XTEST extension. Every key that the user holds is let
// go first, not the modifiers alone: the last key of a chord would otherwise
// repeat without its modifiers, as text in the user's window.
class X11KeySynthesizer final : public platform::KeySynthesizer
{
public:
    // `connection` is the one that the key tap listens on.
    X11KeySynthesizer(X11Connection &connection, X11Keyboard &keyboard, X11OwnInput &ownInput);

    bool press(const platform::KeyChord &chord) override;

private:
    void fake(xcb_keycode_t code, bool press);

    X11Connection &m_connection;
    X11Keyboard &m_keyboard;
    X11OwnInput &m_ownInput;
};

} // namespace nivora::linuxdesktop
