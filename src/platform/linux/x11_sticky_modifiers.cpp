#include "x11_sticky_modifiers.h"

// The header uses a word of C++ as a name.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace nivora::linuxdesktop {

X11StickyModifiers::X11StickyModifiers(const QByteArray &displayName, uint8_t modifiers)
    : m_connection(displayName)
    , m_modifiers(modifiers)
{
    if (!m_connection.hasExtension(xcb_xkb_id))
        return;
    m_connection.reply<xcb_xkb_use_extension_reply>(
        xcb_xkb_use_extension(m_connection.xcb(), 1, 0));
    const auto state = m_connection.reply<xcb_xkb_get_state_reply>(
        xcb_xkb_get_state(m_connection.xcb(), XCB_XKB_ID_USE_CORE_KBD));
    if (!state)
        return;
    m_locked = state->lockedMods & m_modifiers;
    apply(0);
}

X11StickyModifiers::~X11StickyModifiers()
{
    if (m_locked != 0)
        apply(m_locked);
}

void X11StickyModifiers::apply(uint8_t locked)
{
    xcb_xkb_latch_lock_state(m_connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, m_modifiers, locked, 0, 0,
                             m_modifiers, 0, 0);
    m_connection.synchronise();
}

} // namespace nivora::linuxdesktop
