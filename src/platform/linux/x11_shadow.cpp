#include "x11_shadow.h"

#include <xcb/xfixes.h>

#include <array>

namespace nivora::linuxdesktop {

void setX11Shadow(X11Connection &connection, xcb_window_t window, const QSize &size, int margin)
{
    if (!connection.isValid() || window == XCB_NONE)
        return;
    xcb_connection_t *c = connection.xcb();
    // The name that window managers and compositors go by, GTK's or not. With it
    // they draw no shadow of their own.
    const std::vector<xcb_atom_t> atoms = connection.intern({"_GTK_FRAME_EXTENTS"});
    const auto extent = uint32_t(margin);
    const std::array<uint32_t, 4> extents{extent, extent, extent, extent};
    if (margin > 0) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, atoms.front(), XCB_ATOM_CARDINAL, 32,
                            extents.size(), extents.data());
    } else {
        xcb_delete_property(c, window, atoms.front());
    }

    if (!connection.hasExtension(xcb_xfixes_id))
        return;
    // The server takes these requests only from who has told a version.
    xcb_discard_reply(c, xcb_xfixes_query_version(c, 2, 0).sequence);
    xcb_xfixes_region_t region = XCB_NONE; // the whole window
    if (margin > 0) {
        region = xcb_generate_id(c);
        const xcb_rectangle_t inner{int16_t(margin), int16_t(margin),
                                    uint16_t(std::max(size.width() - 2 * margin, 1)),
                                    uint16_t(std::max(size.height() - 2 * margin, 1))};
        xcb_xfixes_create_region(c, region, 1, &inner);
    }
    constexpr xcb_shape_kind_t inputShape = 2; // ShapeInput
    xcb_xfixes_set_window_shape_region(c, window, inputShape, 0, 0, region);
    if (region != XCB_NONE)
        xcb_xfixes_destroy_region(c, region);
    connection.flush();
}

} // namespace nivora::linuxdesktop
