#include "x11_layouts.h"

#include "x11_connection.h"

#include <algorithm>

// Its members bear a name that C++ has taken.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace nivora::linuxdesktop {

X11Layouts X11Layouts::read(const QByteArray &displayName)
{
    X11Layouts layouts;
    X11Connection connection(displayName);
    if (!connection.hasExtension(xcb_xkb_id))
        return layouts;
    const auto version = connection.reply<xcb_xkb_use_extension_reply>(
        xcb_xkb_use_extension(connection.xcb(), 1, 0));
    if (!version || !version->supported)
        return layouts;
    const auto map = connection.reply<xcb_xkb_get_map_reply>(
        xcb_xkb_get_map(connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0, 0,
                        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    if (!map)
        return layouts;
    // Nothing else was asked for, so the keys are all that the answer holds.
    xcb_xkb_key_sym_map_iterator_t key{
        static_cast<xcb_xkb_key_sym_map_t *>(xcb_xkb_get_map_map(map.get())), map->nKeySyms, 0};
    for (int code = map->firstKeySym; key.rem > 0; ++code, xcb_xkb_key_sym_map_next(&key)) {
        constexpr int groupCount = 0x0f;
        const xcb_keysym_t *symbols = xcb_xkb_key_sym_map_syms(key.data);
        for (int layout = 0; layout < (key.data->groupInfo & groupCount); ++layout)
            layouts.m_meanings.push_back(
                {symbols[layout * key.data->width], xcb_keycode_t(code), layout});
    }
    std::ranges::stable_sort(layouts.m_meanings, {}, &Meaning::layout);
    return layouts;
}

std::optional<xcb_keycode_t> X11Layouts::keyFor(xcb_keysym_t symbol, int preferred) const
{
    std::optional<xcb_keycode_t> found;
    for (const Meaning &meaning : m_meanings) {
        if (meaning.symbol != symbol)
            continue;
        if (meaning.layout == preferred)
            return meaning.code;
        if (!found)
            found = meaning.code;
    }
    return found;
}

} // namespace nivora::linuxdesktop
