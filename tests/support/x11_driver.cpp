#include "support/x11_driver.h"

#include "screen_grab.h"
#include "support/x11_peer.h"

#include <X11/keysym.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ranges>

namespace nivora::test {

namespace {

// A quick hand. Programs may take what comes faster for noise, and the first key
// of a keyboard makes the server announce a new layout to everyone.
constexpr auto tapLength = std::chrono::milliseconds(30);
constexpr auto keyInterval = std::chrono::milliseconds(10);

void pause(std::chrono::milliseconds duration)
{
    const auto end = Clock::now() + duration;
    waitUntil([&] { return Clock::now() >= end; }, duration, std::chrono::milliseconds(1));
}

struct FreeKeySymbols
{
    void operator()(xcb_key_symbols_t *symbols) const { xcb_key_symbols_free(symbols); }
};

} // namespace

struct X11Driver::Private
{
    explicit Private(const QByteArray &displayName)
        : peer(displayName)
        , symbols(xcb_key_symbols_alloc(peer.xcb()))
    {
    }

    void fake(uint8_t type, uint8_t detail, QPoint place = {})
    {
        xcb_test_fake_input(peer.xcb(), type, detail, XCB_CURRENT_TIME, peer.root(),
                            int16_t(place.x()), int16_t(place.y()), 0);
        peer.synchronise();
    }

    void fakeKey(uint8_t type, Symbol key)
    {
        const auto codes = X11Peer::hold(xcb_key_symbols_get_keycode(symbols.get(), key));
        if (codes && codes.get()[0] != XCB_NO_SYMBOL)
            fake(type, codes.get()[0]);
    }

    std::optional<Window> describe(WindowId id) const
    {
        const auto names = peer.property(id, XCB_ATOM_WM_CLASS).split('\0');
        if (names.size() < 2)
            return {};
        const auto attributes = X11Peer::hold(xcb_get_window_attributes_reply(
            peer.xcb(), xcb_get_window_attributes(peer.xcb(), id), nullptr));
        const auto size = X11Peer::hold(
            xcb_get_geometry_reply(peer.xcb(), xcb_get_geometry(peer.xcb(), id), nullptr));
        const auto origin = X11Peer::hold(xcb_translate_coordinates_reply(
            peer.xcb(), xcb_translate_coordinates(peer.xcb(), id, peer.root(), 0, 0), nullptr));
        if (!attributes || !size || !origin)
            return {};
        auto title = peer.property(id, netWmName);
        if (title.isEmpty())
            title = peer.property(id, XCB_ATOM_WM_NAME);
        return Window{
            .id = id,
            .instanceName = QString::fromLatin1(names[0]),
            .className = QString::fromLatin1(names[1]),
            .role = QString::fromLatin1(peer.property(id, windowRole)),
            .title = QString::fromUtf8(title),
            .mapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE,
            .geometry = {origin->dst_x, origin->dst_y, int(size->width), int(size->height)}};
    }

    // A program's windows lie right below the root or inside one frame.
    void collect(WindowId parent, int depth, std::vector<Window> &found) const
    {
        const auto tree = X11Peer::hold(
            xcb_query_tree_reply(peer.xcb(), xcb_query_tree(peer.xcb(), parent), nullptr));
        if (!tree)
            return;
        const auto *children = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            if (auto window = describe(children[i]))
                found.push_back(*std::move(window));
            else if (depth > 1)
                collect(children[i], depth - 1, found);
        }
    }

    X11Peer peer;
    std::unique_ptr<xcb_key_symbols_t, FreeKeySymbols> symbols;
    xcb_atom_t netWmName = peer.atom("_NET_WM_NAME");
    xcb_atom_t windowRole = peer.atom("WM_WINDOW_ROLE");
    xcb_atom_t netActiveWindow = peer.atom("_NET_ACTIVE_WINDOW");
};

X11Driver::X11Driver(const QByteArray &displayName)
    : d(std::make_unique<Private>(displayName))
{
}

X11Driver::~X11Driver() = default;

bool X11Driver::isValid() const
{
    return d->symbols && !xcb_connection_has_error(d->peer.xcb());
}

void X11Driver::hold(Symbol key)
{
    d->fakeKey(XCB_KEY_PRESS, key);
}

void X11Driver::release(Symbol key)
{
    d->fakeKey(XCB_KEY_RELEASE, key);
}

void X11Driver::press(std::initializer_list<Symbol> chord)
{
    for (const auto key : chord) {
        hold(key);
        pause(keyInterval);
    }
    for (const auto key : std::views::reverse(chord))
        release(key);
}

// The product's own threshold, where a test sets no other.
constexpr std::chrono::milliseconds longestGap{300};
constexpr int mostAttempts = 3;

Clock::time_point X11Driver::tapShiftTwice(std::chrono::milliseconds gap)
{
    for (int attempt = 0;; ++attempt) {
        hold(XK_Shift_L);
        const auto firstPress = Clock::now();
        pause(tapLength);
        release(XK_Shift_L);
        pause(gap - tapLength);
        const auto secondPress = Clock::now();
        hold(XK_Shift_L);
        pause(tapLength);
        release(XK_Shift_L);
        // On a busy machine the user may have come out slower than the gap. Such
        // presses are surely no double tap, whatever the product makes of them.
        if (gap > longestGap || attempt == mostAttempts || secondPress - firstPress <= longestGap)
            return secondPress;
        pause(longestGap + longestGap);
    }
}

void X11Driver::movePointer(QPoint place)
{
    d->fake(XCB_MOTION_NOTIFY, false, place);
}

void X11Driver::click(Button button)
{
    d->fake(XCB_BUTTON_PRESS, uint8_t(button));
    pause(tapLength);
    d->fake(XCB_BUTTON_RELEASE, uint8_t(button));
    pause(tapLength);
}

void X11Driver::drag(QPoint from, QPoint to)
{
    movePointer(from);
    d->fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
    pause(tapLength);
    // A program may ignore the first stretch, for fear of a shaky hand.
    for (const auto place : {(from * 3 + to) / 4, (from + to) / 2, to}) {
        movePointer(place);
        pause(keyInterval);
    }
    d->fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
    pause(tapLength);
}

std::vector<X11Driver::Window> X11Driver::windows() const
{
    std::vector<Window> found;
    d->collect(d->peer.root(), 3, found);
    return found;
}

std::optional<X11Driver::Window> X11Driver::find(const Condition &condition) const
{
    for (const auto &window : windows()) {
        if (window.mapped && condition(window))
            return window;
    }
    return {};
}

std::optional<X11Driver::Window> X11Driver::waitForMapped(const Condition &condition,
                                                          std::chrono::milliseconds bound) const
{
    std::optional<Window> found;
    waitUntil([&] { return (found = find(condition)).has_value(); }, bound,
              std::chrono::milliseconds(1));
    return found;
}

bool X11Driver::waitForGone(const Condition &condition, std::chrono::milliseconds bound) const
{
    return waitUntil([&] { return !find(condition); }, bound);
}

X11Driver::WindowId X11Driver::activeWindow() const
{
    const auto bytes = d->peer.property(d->peer.root(), d->netActiveWindow);
    WindowId window = 0;
    if (bytes.size() == qsizetype(sizeof window))
        std::memcpy(&window, bytes.constData(), sizeof window);
    return window;
}

bool X11Driver::waitForActive(WindowId window, std::chrono::milliseconds bound) const
{
    return waitUntil([&] { return activeWindow() == window; }, bound);
}

QImage X11Driver::picture(const QRect &rectangle) const
{
    return grabScreen(d->peer, rectangle);
}

X11Driver::Condition X11Driver::ofClass(const QString &className, const QString &role)
{
    return [className, role](const Window &window) {
        return window.className == className && (role.isEmpty() || window.role == role);
    };
}

} // namespace nivora::test
