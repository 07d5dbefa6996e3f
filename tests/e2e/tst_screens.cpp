#include "road.h"

#include "support/x11_peer.h"

#include "localcloud/event_stream.h"

#include <QTest>

#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

namespace {

// Logical pixels.
constexpr int gapBelowSelection = 6;
constexpr int gapBelowPointer = 12;
constexpr int screenMargin = 8;
constexpr int panelWidth = 360;

constexpr QSize firstScreen(1280, 800);
constexpr QSize secondScreen(1600, 900); // left of and above the first

// A window that keeps so many pixels at the bottom of this screen to itself.
void dock(X11Peer &peer, const QRect &screen, const QSize &desktop, int height)
{
    const xcb_window_t window = peer.createWindow(0);
    const xcb_atom_t kind = peer.atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(peer.xcb(), XCB_PROP_MODE_REPLACE, window, peer.atom("_NET_WM_WINDOW_TYPE"),
                        XCB_ATOM_ATOM, 32, 1, &kind);
    std::array<uint32_t, 12> strut{};
    strut[3] = uint32_t(desktop.height() - screen.y() - screen.height() + height);
    strut[10] = uint32_t(screen.left());
    strut[11] = uint32_t(screen.right());
    xcb_change_property(peer.xcb(), XCB_PROP_MODE_REPLACE, window,
                        peer.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32, 12,
                        strut.data());
    xcb_map_window(peer.xcb(), window);
    peer.synchronise();
    waitUntil([&] { return !peer.property(peer.root(), peer.atom("_NET_CLIENT_LIST")).isEmpty(); },
              patience);
}

} // namespace

// The panel's place in pixels of the screen, whatever the scale and wherever the
// user works.
class TestScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePanelOpensBelowTheSelection_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<bool>("onSecond");
        QTest::addColumn<Editor::Toolkit>("toolkit");
        const auto add = [](double scale, bool second) {
            for (const auto toolkit : {Editor::Toolkit::Gtk, Editor::Toolkit::Qt}) {
                QTest::addRow("scale %.1f, %s screen, %s", scale, second ? "second" : "first",
                              toolkit == Editor::Toolkit::Gtk ? "GTK" : "Qt")
                    << scale << second << toolkit;
            }
        };
        add(1, true);
        add(1.5, false);
        add(1.5, true);
        add(2, false);
        add(2, true);
    }

    void thePanelOpensBelowTheSelection()
    {
        QFETCH(const double, scale);
        QFETCH(const bool, onSecond);
        QFETCH(const Editor::Toolkit, toolkit);
        Road road({.screenSize = firstScreen,
                   .secondScreen = secondScreen,
                   .scale = scale,
                   .keyring = false});
        QVERIFY(road.begin());
        road.server.setHandler([](const auto &) { return localcloud::eventStream({u"你好"_s}); });
        const QRect screen =
            onSecond ? QRect({0, 0}, secondScreen)
                     : QRect({secondScreen.width(), secondScreen.height()}, firstScreen);
        // The window manager opens windows where the pointer is.
        const QPoint pointer = screen.topLeft() + QPoint(30, 20);
        road.user->movePointer(pointer);
        QVERIFY(road.open(toolkit, u"hello"_s));
        QRect selection = road.editor->selectionBounds();
        // GTK tells places in units of its own, of whole pixels.
        if (const int unit = int(scale); toolkit == Editor::Toolkit::Gtk)
            selection = QRect(selection.topLeft() * unit, selection.size() * unit);
        QVERIFY2(screen.contains(selection), qUtf8Printable(QDebug::toString(selection)));

        road.pull(Trigger::DoubleShift);
        auto panel = road.product->waitForPanel(patience);
        QVERIFY(panel);
        QVERIFY(road.product->waitForTranslation(u"你好"_s, patience));
        const auto near = [](int actual, double wished) { return std::abs(actual - wished) <= 1; };
        const QString place = QDebug::toString(selection) + QDebug::toString(panel->geometry);
        QVERIFY2(near(panel->geometry.width(), panelWidth * scale), qUtf8Printable(place));
        QVERIFY2(near(panel->geometry.x(),
                      std::max(double(selection.x()), screen.x() + screenMargin * scale)),
                 qUtf8Printable(place));
        QVERIFY2(near(panel->geometry.y(), selection.bottom() + 1 + gapBelowSelection * scale),
                 qUtf8Printable(place));
        road.user->press({XK_Escape});
        QVERIFY(road.product->waitForPanelGone(patience));

        // And with no place of its own: below the pointer.
        road.user->movePointer(pointer + QPoint(100, 100));
        QVERIFY(road.ask(u"panel"_s));
        panel = road.product->waitForPanel(patience);
        QVERIFY(panel);
        const QPoint wished =
            pointer + QPoint(100, 100) + QPoint(0, qRound(gapBelowPointer * scale));
        QVERIFY2(near(panel->geometry.x(), wished.x()) && near(panel->geometry.y(), wished.y()),
                 qUtf8Printable(QDebug::toString(wished) + QDebug::toString(panel->geometry)));
    }

    void thePanelKeepsClearOfDocksAndOnTheDesktop_data()
    {
        QTest::addColumn<double>("scale");
        QTest::newRow("scale 1") << 1.0;
        QTest::newRow("scale 1.5") << 1.5;
    }

    void thePanelKeepsClearOfDocksAndOnTheDesktop()
    {
        QFETCH(const double, scale);
        Road road({.screenSize = firstScreen, .secondScreen = secondScreen, .scale = scale});
        QVERIFY(road.begin());
        const QRect first({secondScreen.width(), secondScreen.height()}, firstScreen);
        const QRect second({0, 0}, secondScreen);
        const QSize desktop(first.right() + 1, first.bottom() + 1);
        constexpr int dockHeight = 40;
        X11Peer peer(road.session.displayName());
        for (const QRect &screen : {first, second})
            dock(peer, screen, desktop, dockHeight);
        for (const QRect &screen : {first, second}) {
            road.user->movePointer(screen.bottomRight() - QPoint(5, 5));
            QVERIFY(road.ask(u"panel"_s));
            const auto allowed = screen.adjusted(0, 0, 0, -dockHeight);
            const auto isInTheCorner = [&] {
                const auto panel = road.user->find(Product::panel());
                const QPoint gap =
                    panel ? allowed.bottomRight() - panel->geometry.bottomRight() : QPoint();
                return panel && panel->mapped && std::abs(gap.x() - screenMargin * scale) <= 1 &&
                       std::abs(gap.y() - screenMargin * scale) <= 1;
            };
            QVERIFY2(waitUntil(isInTheCorner, patience),
                     qUtf8Printable(QDebug::toString(road.user->find(Product::panel())->geometry)));
        }
        // The screen is unplugged with the panel on it, and the other moves to the origin.
        QVERIFY(road.session.launch(u"xrandr"_s, {u"--output"_s, u"DUMMY1"_s, u"--off"_s}));
        const auto isOnTheFirst = [&] {
            const auto panel = road.user->find(Product::panel());
            return panel && panel->mapped && QRect({0, 0}, firstScreen).contains(panel->geometry);
        };
        QVERIFY2(waitUntil(isOnTheFirst, patience),
                 qUtf8Printable(QDebug::toString(road.user->find(Product::panel())->geometry)));
    }
};

QTEST_GUILESS_MAIN(TestScreens)
#include "tst_screens.moc"
