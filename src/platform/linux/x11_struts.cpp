#include "x11_struts.h"

#include <algorithm>
#include <vector>

namespace nivora::linuxdesktop {

namespace {

enum Edge { Left, Right, Top, Bottom };

constexpr uint32_t mostWindows = 1024;

std::vector<uint32_t> words(const xcb_get_property_reply_t *reply)
{
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const uint32_t *>(xcb_get_property_value(reply));
    return {first, first + xcb_get_property_value_length(reply) / 4};
}

bool overlaps(uint32_t first, uint32_t last, int from, int to)
{
    return int64_t(first) <= to && int64_t(last) >= from;
}

} // namespace

QRect withoutStruts(const QRect &screen, const QSize &desktop, std::span<const Strut> struts)
{
    int left = screen.left();
    int top = screen.top();
    int right = screen.left() + screen.width(); // the first pixel beyond
    int bottom = screen.top() + screen.height();
    const QRect whole = screen;
    for (const Strut &strut : struts) {
        const auto meets = [&](Edge edge) {
            const bool upright = edge == Left || edge == Right;
            return strut[edge] > 0 && overlaps(strut[4 + 2 * edge], strut[5 + 2 * edge],
                                               upright ? whole.top() : whole.left(),
                                               upright ? whole.bottom() : whole.right());
        };
        const auto place = [&](Edge edge) {
            const int width = int(std::min<uint32_t>(strut[edge], INT16_MAX));
            switch (edge) {
            case Left:
            case Top:
                return width;
            case Right:
                return desktop.width() - width;
            case Bottom:
                break;
            }
            return desktop.height() - width;
        };
        if (meets(Left) && place(Left) <= whole.right())
            left = std::max(left, place(Left));
        if (meets(Right) && place(Right) > whole.left())
            right = std::min(right, place(Right));
        if (meets(Top) && place(Top) <= whole.bottom())
            top = std::max(top, place(Top));
        if (meets(Bottom) && place(Bottom) > whole.top())
            bottom = std::min(bottom, place(Bottom));
    }
    const QRect rest(left, top, right - left, bottom - top);
    return rest.isValid() ? rest : screen;
}

QRect withoutStruts(X11Connection &connection, const QRect &screen)
{
    if (!connection.isValid())
        return screen;
    xcb_connection_t *c = connection.xcb();
    const std::vector<xcb_atom_t> atoms =
        connection.intern({"_NET_CLIENT_LIST", "_NET_WM_STRUT_PARTIAL", "_NET_WM_STRUT"});
    const auto desktopCookie = xcb_get_geometry(c, connection.root());
    const auto list = connection.reply<xcb_get_property_reply>(
        xcb_get_property(c, 0, connection.root(), atoms[0], XCB_ATOM_WINDOW, 0, mostWindows));
    const auto desktop = connection.reply<xcb_get_geometry_reply>(desktopCookie);
    if (!desktop)
        return screen;

    // All questions first, then all answers: one way to the server and back.
    std::vector<std::array<xcb_get_property_cookie_t, 2>> cookies;
    for (const xcb_window_t window : words(list.get())) {
        cookies.push_back({xcb_get_property(c, 0, window, atoms[1], XCB_ATOM_CARDINAL, 0, 12),
                           xcb_get_property(c, 0, window, atoms[2], XCB_ATOM_CARDINAL, 0, 4)});
    }
    std::vector<Strut> struts;
    for (const auto &[partialCookie, plainCookie] : cookies) {
        const auto partial = words(connection.reply<xcb_get_property_reply>(partialCookie).get());
        const auto plain = words(connection.reply<xcb_get_property_reply>(plainCookie).get());
        Strut strut{};
        if (partial.size() == strut.size()) {
            std::ranges::copy(partial, strut.begin());
        } else if (plain.size() == 4) {
            std::ranges::copy(plain, strut.begin());
            for (const std::size_t last : {5, 7, 9, 11})
                strut[last] = UINT16_MAX; // the whole edge
        } else {
            continue;
        }
        struts.push_back(strut);
    }
    return withoutStruts(screen, {desktop->width, desktop->height}, struts);
}

} // namespace nivora::linuxdesktop
