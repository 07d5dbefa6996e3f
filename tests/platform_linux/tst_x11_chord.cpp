#include "keyboard_test.h"

using namespace nivora;
using namespace nivora::test;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

constexpr uint16_t chordMask = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

// The chord that calls the product, on all kinds of keyboards.
class TestX11Chord : public KeyboardTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(startSession()); }
    void init()
    {
        QVERIFY(openWindow());
        m_fired = 0;
    }
    void cleanup() { closeWindow(); }

    void firesOncePerPress()
    {
        QVERIFY(run(u"xset"_s, {u"r"_s, u"rate"_s, u"40"_s, u"100"_s}));
        QVERIFY(grab());

        // First see that a key held does repeat here.
        const auto repeats = [&] { return m_window->typed.count(m_window->code(XK_x, 0)); };
        m_user->hold(XK_x);
        QTRY_VERIFY(repeats() >= 10);
        m_user->release(XK_x);

        m_user->hold(XK_Control_L);
        m_user->hold(XK_Alt_L);
        m_user->hold(XK_o);
        QTRY_COMPARE(m_fired, 1);
        const auto start = Clock::now();
        waitUntil([&] { return m_fired > 1 || Clock::now() - start > 150ms; }, 1s);
        // What else is typed meanwhile belongs to the window.
        m_user->press({XK_x});
        QTRY_VERIFY(m_window->typed.contains(m_window->code(XK_x, chordMask)));
        m_user->release(XK_o);
        m_user->release(XK_Alt_L);
        m_user->release(XK_Control_L);
        QCOMPARE(m_fired, 1);
    }

    void isLeftToAnotherProgramThatHasIt()
    {
        const auto take = [this](uint16_t state) { return takeForAnotherProgram(XK_o, state); };
        // It has the chord in one state of the locks only.
        QVERIFY(take(chordMask | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
        QVERIFY(!grab());
        QVERIFY(take(chordMask)); // nothing of it is kept from others
        QVERIFY(take(chordMask | XCB_MOD_MASK_LOCK));
        QVERIFY(m_desktop->hotKey().grab({Qt::Key_P, chordO.modifiers}, [] {}));
        QVERIFY(!grab());
    }

    void followsTheLayout_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<X11Driver::Symbol>("place"); // of O, by what is there on the US layout
        QTest::addColumn<bool>("taken");              // by another program at first
        QTest::newRow("Dvorak") << u"us(dvorak)"_s << X11Driver::Symbol(XK_s) << false;
        QTest::newRow("Dvorak, taken at first")
            << u"us(dvorak)"_s << X11Driver::Symbol(XK_s) << true;
        QTest::newRow("Turkish F") << u"tr(f)"_s << X11Driver::Symbol(XK_t) << false;
        QTest::newRow("Russian") << u"ru"_s << X11Driver::Symbol(XK_o) << false;
        QTest::newRow("third of three")
            << u"ru,gr,us(dvorak)"_s << X11Driver::Symbol(XK_s) << false;
    }

    void followsTheLayout()
    {
        QFETCH(const QString, layout);
        QFETCH(const X11Driver::Symbol, place);
        QFETCH(const bool, taken);
        QVERIFY(grab());
        if (taken)
            QVERIFY(takeForAnotherProgram(place, chordMask));
        const auto restore = qScopeGuard([&] { setLayouts({u"us"_s}); });
        QVERIFY(setLayouts({layout}));
        if (taken) {
            QVERIFY(!waitUntil([&] { return fires(place); }, 300ms));
            xcb_ungrab_key(m_window->peer().xcb(), XCB_GRAB_ANY, m_window->peer().root(),
                           XCB_MOD_MASK_ANY);
        }
        QTRY_VERIFY(fires(place));
        // What the place of before gives now is the window's.
        m_window->typed.clear();
        if (place != XK_o) {
            m_user->press({XK_Control_L, XK_Alt_L, XK_o});
            QTRY_VERIFY(m_window->typed.contains(u"32:%1"_s.arg(chordMask)));
        }
        QVERIFY(setLayouts({u"us"_s}));
        QTRY_VERIFY(fires(XK_o));
    }

    void pressInAnswerReachesTheWindow()
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
        const auto start = Clock::now();
        waitUntil([&] { return Clock::now() - start > 100ms; }, 1s);
        m_user->release(XK_o);
        m_user->release(XK_Alt_L);
        m_user->release(XK_Control_L);
        QVERIFY(!m_window->typed.contains(m_window->code(XK_o, 0)));
    }

private:
    bool grab()
    {
        return m_desktop->hotKey().grab(chordO, [this] { ++m_fired; });
    }
    // False when somebody has it already.
    bool takeForAnotherProgram(X11Driver::Symbol key, uint16_t state)
    {
        X11Peer &peer = m_window->peer();
        return !X11Peer::hold(xcb_request_check(
            peer.xcb(),
            xcb_grab_key_checked(peer.xcb(), 0, peer.root(), state, m_window->keyCode(key),
                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    }
    bool fires(X11Driver::Symbol key)
    {
        const int before = m_fired;
        m_user->press({XK_Control_L, XK_Alt_L, key});
        return waitUntil([&] { return m_fired > before; }, 100ms);
    }

    int m_fired = 0;
};

QTEST_GUILESS_MAIN(TestX11Chord)
#include "tst_x11_chord.moc"
