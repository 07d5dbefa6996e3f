#pragma once

#include "x11_connection.h"

namespace nivora::linuxdesktop {

// Sets modifiers aside that are in effect though nobody holds their keys, as they
// are with sticky keys: latched for the next key, or locked. Locked ones come back
// with the end of this object, latched ones do not: a key uses them up.
//
// On a connection of its own: one that uses this extension is no longer told of
// new layouts in the way that X11Keyboard listens for. Waits for a few answers,
// none longer than X11Connection::waitLimit.
class X11StickyModifiers
{
public:
    // `modifiers`: the state bits of those to set aside.
    X11StickyModifiers(const QByteArray &displayName, uint8_t modifiers);
    ~X11StickyModifiers();
    X11StickyModifiers(const X11StickyModifiers &) = delete;
    X11StickyModifiers &operator=(const X11StickyModifiers &) = delete;

private:
    void apply(uint8_t locked);

    X11Connection m_connection;
    uint8_t m_modifiers;
    uint8_t m_locked = 0; // those to come back
};

} // namespace nivora::linuxdesktop
