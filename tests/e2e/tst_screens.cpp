#include "road.h"

#include "localcloud/event_stream.h"

#include <QTest>

#include <X11/keysym.h>

#include <algorithm>
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

} // namespace

// The panel's place in pixels of the screen, whatever the scale and wherever the
// user works.
class TestScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePanelOpensBelowTheSelection_data();
    void thePanelOpensBelowTheSelection();
};

void TestScreens::thePanelOpensBelowTheSelection_data()
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

void TestScreens::thePanelOpensBelowTheSelection()
{
    QFETCH(const double, scale);
    QFETCH(const bool, onSecond);
    QFETCH(const Editor::Toolkit, toolkit);
    Road road({.screenSize = firstScreen,
               .secondScreen = secondScreen,
               .scale = scale,
               .keyring = false});
    QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
    road.server.setHandler([](const auto &) { return localcloud::eventStream({u"你好"_s}); });
    const QRect screen = onSecond
                             ? QRect({0, 0}, secondScreen)
                             : QRect({secondScreen.width(), secondScreen.height()}, firstScreen);
    // The window manager opens windows where the pointer is.
    const QPoint pointer = screen.topLeft() + QPoint(30, 20);
    road.user->movePointer(pointer);
    QVERIFY2(road.open(toolkit, u"hello"_s), qUtf8Printable(road.problem()));
    QRect selection = road.editor->selectionBounds();
    // GTK tells places in units of its own, of whole pixels.
    if (const int unit = int(scale); toolkit == Editor::Toolkit::Gtk)
        selection = QRect(selection.topLeft() * unit, selection.size() * unit);
    QVERIFY2(screen.contains(selection), qUtf8Printable(QDebug::toString(selection)));

    road.pull(Trigger::DoubleShift);
    auto panel = road.product->waitForPanel(patience);
    QVERIFY2(panel, qUtf8Printable(road.problem()));
    QVERIFY2(road.product->waitForTranslation(u"你好"_s, patience), qUtf8Printable(road.problem()));
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
    QVERIFY(
        road.session.launch(u"gdbus"_s, {u"call"_s, u"--session"_s, u"--dest"_s, u"app.nivora"_s,
                                         u"--object-path"_s, u"/app/nivora"_s, u"--method"_s,
                                         u"org.freedesktop.Application.ActivateAction"_s,
                                         u"panel"_s, u"[]"_s, u"{}"_s}));
    panel = road.product->waitForPanel(patience);
    QVERIFY2(panel, qUtf8Printable(road.problem()));
    const QPoint wished = pointer + QPoint(100, 100) + QPoint(0, qRound(gapBelowPointer * scale));
    QVERIFY2(near(panel->geometry.x(), wished.x()) && near(panel->geometry.y(), wished.y()),
             qUtf8Printable(QDebug::toString(wished) + QDebug::toString(panel->geometry)));
}

QTEST_GUILESS_MAIN(TestScreens)
#include "tst_screens.moc"
