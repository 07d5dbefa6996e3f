#include "keyboard_test.h"

#include "platform/idle_monitor.h"

#include <xcb/xcbext.h>

// Its members bear a name that C++ has taken.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <sys/uio.h>

using namespace nivora;
using namespace nivora::test;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using platform::KeyEvent;

namespace {
// "D" for a key, "M" for a modifier; "L", "R" or "-" for the key; "^" if Shift is held.
QString describe(const KeyEvent &event)
{
    const auto key = event.key == KeyEvent::Key::LeftShift    ? u'L'
                     : event.key == KeyEvent::Key::RightShift ? u'R'
                                                              : u'-';
    return QString(event.kind == KeyEvent::Kind::KeyDown ? u'D' : u'M') + key +
           (event.shiftHeld ? u"^"_s : QString());
}

// Modifiers that nobody holds, as sticky keys leave them.
void stick(X11Peer &peer, int latched, int locked)
{
    X11Peer::hold(
        xcb_xkb_use_extension_reply(peer.xcb(), xcb_xkb_use_extension(peer.xcb(), 1, 0), nullptr));
    xcb_xkb_latch_lock_state_request_t request{};
    request.deviceSpec = XCB_XKB_ID_USE_CORE_KBD;
    request.affectModLocks = request.affectModLatches = 0xff;
    request.modLocks = uint8_t(locked);
    request.pad0 = uint8_t(latched); // the request's description in xcb lacks it
    // xcb writes into the two before the first.
    iovec parts[3]{{}, {}, {&request, sizeof request}};
    const xcb_protocol_request_t protocol{1, &xcb_xkb_id, XCB_XKB_LATCH_LOCK_STATE, 1};
    xcb_send_request(peer.xcb(), 0, parts + 2, &protocol);
    peer.synchronise();
}

} // namespace

class TestX11Keys : public KeyboardTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(startSession()); }
    void init()
    {
        QVERIFY(openWindow());
        QVERIFY(m_desktop->keyEventTap().start([this](const KeyEvent &event) {
            m_events << describe(event);
            m_times << event.time;
        }));
        m_events.clear();
        m_times.clear();
    }

    void cleanup() { closeWindow(); }

    void tapReports_data()
    {
        // Each symbol presses the key if it is up and releases it if it is down.
        QTest::addColumn<Symbols>("keys");
        QTest::addColumn<QString>("expected");

        QTest::newRow("left Shift") << Symbols{XK_Shift_L, XK_Shift_L} << u"ML^ ML"_s;
        QTest::newRow("right Shift") << Symbols{XK_Shift_R, XK_Shift_R} << u"MR^ MR"_s;
        QTest::newRow("both, overlapping")
            << Symbols{XK_Shift_L, XK_Shift_R, XK_Shift_L, XK_Shift_R} << u"ML^ MR^ ML^ MR"_s;
        QTest::newRow("a letter") << Symbols{XK_a, XK_a} << u"D-"_s;
        QTest::newRow("a capital")
            << Symbols{XK_Shift_L, XK_a, XK_a, XK_Shift_L} << u"ML^ D-^ ML"_s;
        QTest::newRow("Control") << Symbols{XK_Control_L, XK_Control_L} << u"M- M-"_s;
        QTest::newRow("a lock") << Symbols{XK_Caps_Lock, XK_Caps_Lock, XK_Caps_Lock, XK_Caps_Lock}
                                << u"M- M- M- M-"_s;
        QTest::newRow("Scroll Lock") << Symbols{XK_Scroll_Lock, XK_Scroll_Lock} << u"M- M-"_s;
    }

    void tapReports()
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
            waitUntil([&] { return m_events.size() > seen; }, 50ms, 1ms);
        }
        QTRY_COMPARE(m_events.join(u' '), expected);
    }

    void tapMissesNothingWhileTheProgramIsBusy_data()
    {
        QTest::addColumn<int>("served"); // a bit for each key movement that is seen at once
        for (int served = 0; served < 8; ++served)
            QTest::addRow("seen at once: %d%d%d", served & 1, served >> 1 & 1, served >> 2)
                << served;
    }

    void tapMissesNothingWhileTheProgramIsBusy()
    {
        QFETCH(const int, served);
        constexpr auto gap = 20ms;
        const auto pass = [](std::chrono::milliseconds time) {
            const auto start = Clock::now();
            while (Clock::now() - start < time)
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

    void tapDoesNotReportOwnKeys()
    {
        m_user->hold(XK_Shift_L);
        QTRY_COMPARE(m_events.join(u' '), u"ML^"_s);
        QVERIFY(m_desktop->keySynthesizer().press({Qt::Key_V, Qt::ControlModifier}));
        QTRY_VERIFY(m_window->typed.contains(m_window->code(XK_v, XCB_MOD_MASK_CONTROL)));
        // Another program's are as good as the user's, on the very same keys.
        m_user->press({XK_Control_L, XK_v});
        QTRY_COMPARE(m_events.join(u' '), u"ML^ M- D- M-"_s);
    }

    void pressArrivesAlone_data()
    {
        QTest::addColumn<Symbols>("held");
        QTest::addColumn<int>("latched");
        QTest::addColumn<int>("locked");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<X11Driver::Symbol>("symbol");
        QTest::addColumn<int>("state");
        const auto row = [](const char *name, const Symbols &held, Qt::Key key,
                            Qt::KeyboardModifiers modifiers, X11Driver::Symbol symbol, int state,
                            int latched = 0, int locked = 0) {
            QTest::newRow(name) << held << latched << locked << int(key) << int(modifiers) << symbol
                                << state;
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
        row("the modifier itself held", {XK_Control_R}, Qt::Key_C, Qt::ControlModifier, XK_c,
            control);
        row("the key itself held", {XK_v}, Qt::Key_V, Qt::ControlModifier, XK_v, control);
        row("no modifier", {XK_Shift_L}, Qt::Key_Return, Qt::NoModifier, XK_Return, 0);
        row("Shift latched", {}, Qt::Key_V, Qt::ControlModifier, XK_v, control, shift);
        row("Shift locked", {}, Qt::Key_V, Qt::ControlModifier, XK_v, control, 0, shift);
        row("Alt locked, Shift held", {XK_Shift_L}, Qt::Key_V, Qt::ControlModifier, XK_v, control,
            0, XCB_MOD_MASK_1);
    }

    void pressArrivesAlone()
    {
        QFETCH(const Symbols, held);
        QFETCH(const int, latched);
        QFETCH(const int, locked);
        QFETCH(const int, key);
        QFETCH(const int, modifiers);
        QFETCH(const X11Driver::Symbol, symbol);
        QFETCH(const int, state);

        for (const auto each : held)
            m_user->hold(each);
        stick(m_window->peer(), latched, locked);
        m_window->typed.clear();
        QVERIFY(
            m_desktop->keySynthesizer().press({Qt::Key(key), Qt::KeyboardModifiers(modifiers)}));
        m_user->press({XK_F12}); // all of it has arrived when this has
        QTRY_VERIFY(m_window->typed.contains(m_window->code(XK_F12, locked))); // which is back
        stick(m_window->peer(), 0, 0);
        for (const auto each : held)
            m_user->release(each);

        // The modifiers of the chord go down one after the other before the key.
        m_window->typed.removeLast();
        QCOMPARE(m_window->typed.last(), m_window->code(symbol, state));
        QCOMPARE(m_window->typed.size(), 1 + qPopulationCount(uint(state)));
    }

    void pressOfAKeyThatIsMissingFails()
    {
        QVERIFY(!m_desktop->keySynthesizer().press({Qt::Key_Hangul, Qt::NoModifier}));
        m_user->press({XK_F12});
        QTRY_COMPARE(m_window->typed, QStringList{m_window->code(XK_F12, 0)});
    }

    void aTouchPutsTheIdleAlarmOff()
    {
        bool idle = false;
        const auto wait = m_desktop->idleMonitor().whenIdle(1500ms, [&] { idle = true; });
        QVERIFY(!idle);
        const auto lastTouch = [&] {
            Clock::time_point time;
            for (int i = 0; i < 12; ++i) { // together longer than the span
                m_user->press({XK_a});
                time = Clock::now();
                waitUntil([&] { return idle; }, 200ms);
            }
            return time;
        }();
        QVERIFY(!idle);
        QTRY_VERIFY(idle);
        QVERIFY(Clock::now() - lastTouch > 1400ms);
        // Nobody has come back since.
        bool still = false;
        const auto again = m_desktop->idleMonitor().whenIdle(1500ms, [&] { still = true; });
        QTRY_VERIFY_WITH_TIMEOUT(still, 1000);
    }

private:
    QStringList m_events;
    QList<std::chrono::milliseconds> m_times;
};

QTEST_GUILESS_MAIN(TestX11Keys)
#include "tst_x11_keys.moc"
