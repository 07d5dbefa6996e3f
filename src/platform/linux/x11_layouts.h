#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <optional>
#include <vector>

namespace nivora::linuxdesktop {

// What every key gives in each of up to four layouts. The server's plain tables
// hold two for certain.
class X11Layouts
{
public:
    // Empty when the server does not tell. Asks on a connection of its own: a
    // client that speaks XKB is no longer told of new layouts in the plain way.
    static X11Layouts read(const QByteArray &displayName);

    // The key that gives the symbol without modifiers, in the preferred layout
    // if it has it, otherwise in the first that does.
    std::optional<xcb_keycode_t> keyFor(xcb_keysym_t symbol, int preferred) const;

private:
    struct Meaning
    {
        xcb_keysym_t symbol;
        xcb_keycode_t code;
        int layout;
    };
    std::vector<Meaning> m_meanings; // in the order of layouts, then codes
};

} // namespace nivora::linuxdesktop
