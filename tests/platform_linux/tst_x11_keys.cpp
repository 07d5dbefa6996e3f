#include "platform/keys.h"
#include "platform_linux/x11_desktop.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_driver.h"
#include "support/x11_peer.h"

#include <QSignalSpy>
#include <QTest>

#include <X11/keysym.h>
#include <xcb/xcb_keysyms.h>

using namespace nivora;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using linuxdesktop::X11Desktop;
using platform::KeyChord;
using platform::KeyEvent;
using test::X11Driver;
using test::X11Peer;

using Symbols = QList<X11Driver::Symbol>;

namespace {

const KeyChord chordO{Qt::Key_O, Qt::ControlModifier | Qt::AltModifier};

// "D" for a key, "M" for a modifier; "L", "R" or "-" for the key; "^" if Shift is held.
QString describe(const KeyEvent &event)
{
    const auto key = event.key == KeyEvent::Key::LeftShift    ? u'L'
                     : event.key == KeyEvent::Key::RightShift ? u'R'
                                                              : u'-';
    return QString(event.kind == KeyEvent::Kind::KeyDown ? u'D' : u'M') + key +
           (event.shiftHeld ? u"^"_s : QString());
}

// A window with the focus that notes what keys it is given.
class Typewriter
{
public:
    explicit Typewriter(const QByteArray &displayName)
        : m_peer(displayName)
    {
        const auto window = m_peer.createWindow(XCB_EVENT_MASK_KEY_PRESS);
        m_peer.onEvent = [this](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) != XCB_KEY_PRESS)
                return;
            const auto &press = reinterpret_cast<const xcb_key_press_event_t &>(event);
            // The rest tells of locks and layouts.
            constexpr int modifiers =
                XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
            typed << u"%1:%2"_s.arg(press.detail).arg(press.state & modifiers);
        };
        xcb_map_window(m_peer.xcb(), window);
        xcb_set_input_focus(m_peer.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        m_peer.synchronise();
    }

    QString code(X11Driver::Symbol symbol, int state)
    {
        return u"%1:%2"_s.arg(keyCode(symbol)).arg(state);
    }
    xcb_keycode_t keyCode(X11Driver::Symbol symbol)
    {
        auto *symbols = xcb_key_symbols_alloc(m_peer.xcb());
        const auto codes = X11Peer::hold(xcb_key_symbols_get_keycode(symbols, symbol));
        const xcb_keycode_t first = codes.get()[0];
        xcb_key_symbols_free(symbols);
        m_peer.serve(); // what came with the answer
        return first;
    }

    X11Peer &peer() { return m_peer; }

    QStringList typed; // key code and state

private:
    X11Peer m_peer;
};

} // namespace

class TestX11Keys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void tapReports_data();
    void tapReports();
    void tapMissesNothingWhileTheProgramIsBusy_data();
    void tapMissesNothingWhileTheProgramIsBusy();
    void tapSeesKeysWhileAnotherProgramHasTheKeyboard();
    void tapDoesNotReportOwnKeys();
    void tapLosesNothingToTheChord();
    void chordFiresWhateverTheLocks_data();
    void chordFiresWhateverTheLocks();
    void chordFiresOncePerPress();
    void chordOfAnotherProgramIsLeftToIt();
    void chordFollowsTheLayout_data();
    void chordFollowsTheLayout();
    void layoutWithoutLatinLettersServesToo();
    void pressArrivesAlone_data();
    void pressArrivesAlone();
    void pressInAnswerToTheChordReachesTheWindow();
    void pressOfAKeyThatIsMissingFails();

private:
    bool setLayouts(const QStringList &arguments)
    {
        QProcess *program = m_session.launch(u"setxkbmap"_s, arguments);
        return program &&
               (program->state() == QProcess::NotRunning || program->waitForFinished()) &&
               program->exitCode() == 0;
    }

    test::DesktopSession m_session;
    std::unique_ptr<X11Driver> m_user;
    std::unique_ptr<Typewriter> m_window;
    std::unique_ptr<X11Desktop> m_desktop;
    QStringList m_events;
    QList<std::chrono::milliseconds> m_times;
};

void TestX11Keys::initTestCase()
{
    QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
             qPrintable(m_session.error()));
    m_user = std::make_unique<X11Driver>(m_session.displayName());
    QVERIFY(m_user->isValid());
}

void TestX11Keys::init()
{
    m_window = std::make_unique<Typewriter>(m_session.displayName());
    m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
    QVERIFY(m_desktop->isValid());
    QVERIFY(m_desktop->keyEventTap().start([this](const KeyEvent &event) {
        m_events << describe(event);
        m_times << event.time;
    }));
    m_events.clear();
    m_times.clear();
}

void TestX11Keys::cleanup()
{
    m_desktop.reset();
    m_window.reset();
}

void TestX11Keys::tapReports_data()
{
    // Each symbol presses the key if it is up and releases it if it is down.
    QTest::addColumn<Symbols>("keys");
    QTest::addColumn<QString>("expected");

    QTest::newRow("left Shift") << Symbols{XK_Shift_L, XK_Shift_L} << u"ML^ ML"_s;
    QTest::newRow("right Shift") << Symbols{XK_Shift_R, XK_Shift_R} << u"MR^ MR"_s;
    QTest::newRow("both, overlapping")
        << Symbols{XK_Shift_L, XK_Shift_R, XK_Shift_L, XK_Shift_R} << u"ML^ MR^ ML^ MR"_s;
    QTest::newRow("a letter") << Symbols{XK_a, XK_a} << u"D-"_s;
    QTest::newRow("a capital") << Symbols{XK_Shift_L, XK_a, XK_a, XK_Shift_L} << u"ML^ D-^ ML"_s;
    QTest::newRow("Control") << Symbols{XK_Control_L, XK_Control_L} << u"M- M-"_s;
    QTest::newRow("a lock") << Symbols{XK_Caps_Lock, XK_Caps_Lock, XK_Caps_Lock, XK_Caps_Lock}
                            << u"M- M- M- M-"_s;
    QTest::newRow("Scroll Lock") << Symbols{XK_Scroll_Lock, XK_Scroll_Lock} << u"M- M-"_s;
}

void TestX11Keys::tapReports()
{
    QFETCH(const Symbols, keys);
    QFETCH(const QString, expected);

    QSet<X11Driver::Symbol> down;
    for (const auto key : keys) {
        if (down.remove(key)) {
            m_user->release(key);
        } else {
            m_user->hold(key);
            down.insert(key);
        }
        // As a person does: the program has seen one before the next.
        const auto seen = m_events.size();
        test::waitUntil([&] { return m_events.size() > seen; }, 50ms, 1ms);
    }
    QTRY_COMPARE(m_events.join(u' '), expected);
}

void TestX11Keys::tapMissesNothingWhileTheProgramIsBusy_data()
{
    QTest::addColumn<int>("served"); // a bit for each key movement that is seen at once
    for (int served = 0; served < 8; ++served)
        QTest::addRow("seen at once: %d%d%d", served & 1, served >> 1 & 1, served >> 2) << served;
}

void TestX11Keys::tapMissesNothingWhileTheProgramIsBusy()
{
    QFETCH(const int, served);
    constexpr auto gap = 20ms;
    const auto pass = [](std::chrono::milliseconds time) {
        const auto start = test::Clock::now();
        while (test::Clock::now() - start < time)
            QThread::yieldCurrentThread();
    };
    for (int round = 0; round < 3; ++round) {
        m_events.clear();
        m_times.clear();
        for (int movement = 0; movement < 4; ++movement) {
            if (movement % 2 == 0)
                m_user->hold(XK_Shift_L);
            else
                m_user->release(XK_Shift_L);
            if (served >> movement & 1)
                QTRY_COMPARE(m_events.size(), movement + 1);
            else if (movement == 1)
                pass(gap);
        }
        QTRY_COMPARE(m_events.join(u' '), u"ML^ ML ML^ ML"_s);
        if (!(served & 2))
            QVERIFY(m_times.at(2) - m_times.at(0) >= gap - 1ms);
    }
}

void TestX11Keys::tapSeesKeysWhileAnotherProgramHasTheKeyboard()
{
    X11Peer &peer = m_window->peer();
    const auto grab = X11Peer::hold(
        xcb_grab_keyboard_reply(peer.xcb(),
                                xcb_grab_keyboard(peer.xcb(), 0, peer.root(), XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    QCOMPARE(int(grab->status), int(XCB_GRAB_STATUS_SUCCESS));
    m_user->press({XK_Shift_L});
    m_user->press({XK_Shift_L});
    QTRY_COMPARE(m_events.join(u' '), u"ML^ ML ML^ ML"_s);
}

void TestX11Keys::tapDoesNotReportOwnKeys()
{
    m_user->hold(XK_Shift_L);
    QTRY_COMPARE(m_events.join(u' '), u"ML^"_s);
    QVERIFY(m_desktop->keySynthesizer().press({Qt::Key_V, Qt::ControlModifier}));
    QTRY_VERIFY(m_window->typed.contains(m_window->code(XK_v, XCB_MOD_MASK_CONTROL)));
    // Another program's are as good as the user's, on the very same keys.
    m_user->press({XK_Control_L, XK_v});
    QTRY_COMPARE(m_events.join(u' '), u"ML^ M- D- M-"_s);
}

void TestX11Keys::tapLosesNothingToTheChord()
{
    int fired = 0;
    QVERIFY(m_desktop->hotKey().grab(chordO, [&] { ++fired; }));
    m_user->press({XK_Control_L, XK_Shift_L});
    m_user->press({XK_Control_L, XK_Alt_L, XK_o});
    m_user->press({XK_Shift_L});
    QTRY_COMPARE(fired, 1);
    QTRY_COMPARE(m_events.join(u' '), u"M- ML^ ML M- M- M- D- M- M- ML^ ML"_s);
}

void TestX11Keys::chordFiresWhateverTheLocks_data()
{
    QTest::addColumn<Symbols>("locks");
    QTest::newRow("none") << Symbols{};
    QTest::newRow("CapsLock") << Symbols{XK_Caps_Lock};
    QTest::newRow("NumLock") << Symbols{XK_Num_Lock};
    QTest::newRow("both") << Symbols{XK_Caps_Lock, XK_Num_Lock};
}

void TestX11Keys::chordFiresWhateverTheLocks()
{
    QFETCH(const Symbols, locks);
    int fired = 0;
    QVERIFY(m_desktop->hotKey().grab(chordO, [&] { ++fired; }));

    for (const auto lock : locks)
        m_user->press({lock});
    m_user->press({XK_Control_L, XK_Alt_L, XK_o});
    m_user->press({XK_Control_L, XK_Alt_L, XK_o});
    m_user->press({XK_Control_L, XK_o});
    for (const auto lock : locks)
        m_user->press({lock});

    // The last, with one modifier less, belongs to the window.
    QTRY_VERIFY(m_window->typed.size() > 0);
    QTRY_COMPARE(fired, 2);
}

void TestX11Keys::chordFiresOncePerPress()
{
    QProcess *rate = m_session.launch(u"xset"_s, {u"r"_s, u"rate"_s, u"40"_s, u"100"_s});
    QVERIFY(rate->state() == QProcess::NotRunning || rate->waitForFinished());
    int fired = 0;
    QVERIFY(m_desktop->hotKey().grab(chordO, [&] { ++fired; }));

    // First see that a key held does repeat here.
    const auto repeats = [&] { return m_window->typed.count(m_window->code(XK_x, 0)); };
    m_user->hold(XK_x);
    QTRY_VERIFY(repeats() >= 10);
    m_user->release(XK_x);

    m_user->hold(XK_Control_L);
    m_user->hold(XK_Alt_L);
    m_user->hold(XK_o);
    QTRY_COMPARE(fired, 1);
    const auto start = test::Clock::now();
    test::waitUntil([&] { return fired > 1 || test::Clock::now() - start > 150ms; }, 1s);
    // What else is typed meanwhile belongs to the window.
    m_user->press({XK_x});
    QTRY_VERIFY(
        m_window->typed.contains(m_window->code(XK_x, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1)));
    m_user->release(XK_o);
    m_user->release(XK_Alt_L);
    m_user->release(XK_Control_L);
    QCOMPARE(fired, 1);
}

void TestX11Keys::chordOfAnotherProgramIsLeftToIt()
{
    X11Peer &peer = m_window->peer();
    const auto mask = uint16_t(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    const auto grab = [&](uint16_t state) {
        const auto error = X11Peer::hold(xcb_request_check(
            peer.xcb(),
            xcb_grab_key_checked(peer.xcb(), 0, peer.root(), state, m_window->keyCode(XK_o),
                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        return error == nullptr;
    };
    // It has the chord in one state of the locks only.
    QVERIFY(grab(mask | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
    QVERIFY(!m_desktop->hotKey().grab(chordO, [] {}));
    QVERIFY(grab(mask)); // nothing of it is kept from others
    QVERIFY(grab(mask | XCB_MOD_MASK_LOCK));
    QVERIFY(m_desktop->hotKey().grab({Qt::Key_P, chordO.modifiers}, [] {}));
    QVERIFY(!m_desktop->hotKey().grab(chordO, [] {}));
}

void TestX11Keys::chordFollowsTheLayout_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<X11Driver::Symbol>("place"); // of O, by what is there on the US layout
    QTest::newRow("Dvorak") << u"us(dvorak)"_s << X11Driver::Symbol(XK_s);
    QTest::newRow("Turkish F") << u"tr(f)"_s << X11Driver::Symbol(XK_t);
    QTest::newRow("Russian") << u"ru"_s << X11Driver::Symbol(XK_o);
    QTest::newRow("third of three") << u"ru,gr,us(dvorak)"_s << X11Driver::Symbol(XK_s);
}

void TestX11Keys::chordFollowsTheLayout()
{
    QFETCH(const QString, layout);
    QFETCH(const X11Driver::Symbol, place);
    int fired = 0;
    QVERIFY(m_desktop->hotKey().grab(chordO, [&] { ++fired; }));
    const auto restore = qScopeGuard([&] { setLayouts({u"us"_s}); });
    QVERIFY(setLayouts({layout}));
    const auto chordFires = [&](X11Driver::Symbol key) {
        const int before = fired;
        m_user->press({XK_Control_L, XK_Alt_L, key});
        return test::waitUntil([&] { return fired > before; }, 100ms);
    };
    QTRY_VERIFY(chordFires(place));
    // What the place of before gives now is the window's.
    m_window->typed.clear();
    if (place != XK_o) {
        m_user->press({XK_Control_L, XK_Alt_L, XK_o});
        QTRY_VERIFY(
            m_window->typed.contains(u"32:%1"_s.arg(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1)));
    }
    QVERIFY(setLayouts({u"us"_s}));
    QTRY_VERIFY(chordFires(XK_o));
}

void TestX11Keys::layoutWithoutLatinLettersServesToo()
{
    const auto restore = qScopeGuard([&] { setLayouts({u"us"_s, u"-option"_s}); });
    int fired = 0;
    QVERIFY(m_desktop->hotKey().grab(chordO, [&] { ++fired; }));
    QVERIFY(setLayouts({u"us,ru"_s, u"-option"_s, u"grp:caps_toggle"_s}));
    m_user->press({XK_Caps_Lock}); // changes to the second layout now
    constexpr int secondLayout = 1 << 13;
    const auto pointer = X11Peer::hold(xcb_query_pointer_reply(
        m_window->peer().xcb(), xcb_query_pointer(m_window->peer().xcb(), m_window->peer().root()),
        nullptr));
    QVERIFY(pointer->mask & secondLayout);

    QTRY_VERIFY((m_user->press({XK_Control_L, XK_Alt_L, XK_o}), QCoreApplication::processEvents(),
                 fired > 0));
    m_window->typed.clear();
    QVERIFY(m_desktop->keySynthesizer().press({Qt::Key_V, Qt::ControlModifier}));
    QTRY_COMPARE(m_window->typed.value(1), m_window->code(XK_v, XCB_MOD_MASK_CONTROL));
    m_user->press({XK_Caps_Lock}); // back to the first
}

void TestX11Keys::pressArrivesAlone_data()
{
    QTest::addColumn<Symbols>("held");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<X11Driver::Symbol>("symbol");
    QTest::addColumn<int>("state");
    const auto row = [](const char *name, const Symbols &held, Qt::Key key,
                        Qt::KeyboardModifiers modifiers, X11Driver::Symbol symbol, int state) {
        QTest::newRow(name) << held << int(key) << int(modifiers) << symbol << state;
    };
    constexpr int control = XCB_MOD_MASK_CONTROL;
    constexpr int shift = XCB_MOD_MASK_SHIFT;
    row("nothing held", {}, Qt::Key_V, Qt::ControlModifier, XK_v, control);
    row("left Shift held", {XK_Shift_L}, Qt::Key_V, Qt::ControlModifier, XK_v, control);
    row("both Shifts held", {XK_Shift_L, XK_Shift_R}, Qt::Key_Insert, Qt::ControlModifier,
        XK_Insert, control);
    row("Control and Alt held", {XK_Control_L, XK_Alt_L}, Qt::Key_Insert, Qt::ControlModifier,
        XK_Insert, control);
    row("Super held", {XK_Super_L}, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, XK_v,
        control | shift);
    row("the modifier itself held", {XK_Control_R}, Qt::Key_C, Qt::ControlModifier, XK_c, control);
    row("the key itself held", {XK_v}, Qt::Key_V, Qt::ControlModifier, XK_v, control);
    row("no modifier", {XK_Shift_L}, Qt::Key_Return, Qt::NoModifier, XK_Return, 0);
}

void TestX11Keys::pressArrivesAlone()
{
    QFETCH(const Symbols, held);
    QFETCH(const int, key);
    QFETCH(const int, modifiers);
    QFETCH(const X11Driver::Symbol, symbol);
    QFETCH(const int, state);

    for (const auto each : held)
        m_user->hold(each);
    m_window->peer().synchronise();
    m_window->typed.clear();
    QVERIFY(m_desktop->keySynthesizer().press({Qt::Key(key), Qt::KeyboardModifiers(modifiers)}));
    m_user->press({XK_F12}); // all of it has arrived when this has
    QTRY_VERIFY(m_window->typed.contains(m_window->code(XK_F12, 0)));
    for (const auto each : held)
        m_user->release(each);

    // The modifiers of the chord go down one after the other before the key.
    m_window->typed.removeLast();
    QCOMPARE(m_window->typed.last(), m_window->code(symbol, state));
    QCOMPARE(m_window->typed.size(), 1 + qPopulationCount(uint(state)));
}

void TestX11Keys::pressInAnswerToTheChordReachesTheWindow()
{
    bool pressed = false;
    QVERIFY(m_desktop->hotKey().grab(chordO, [&] {
        m_window->typed.clear();
        pressed = m_desktop->keySynthesizer().press({Qt::Key_Insert, Qt::ControlModifier});
    }));
    m_user->hold(XK_Control_L);
    m_user->hold(XK_Alt_L);
    m_user->hold(XK_o);
    QTRY_VERIFY(pressed);
    QTRY_VERIFY(m_window->typed.contains(m_window->code(XK_Insert, XCB_MOD_MASK_CONTROL)));
    // With its modifiers gone, the chord's own key must not become text.
    const auto start = test::Clock::now();
    test::waitUntil([&] { return test::Clock::now() - start > 100ms; }, 1s);
    m_user->release(XK_o);
    m_user->release(XK_Alt_L);
    m_user->release(XK_Control_L);
    QVERIFY(!m_window->typed.contains(m_window->code(XK_o, 0)));
}

void TestX11Keys::pressOfAKeyThatIsMissingFails()
{
    QVERIFY(!m_desktop->keySynthesizer().press({Qt::Key_Hangul, Qt::NoModifier}));
    m_user->press({XK_F12});
    QTRY_COMPARE(m_window->typed, QStringList{m_window->code(XK_F12, 0)});
}

QTEST_GUILESS_MAIN(TestX11Keys)
#include "tst_x11_keys.moc"
