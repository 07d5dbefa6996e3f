#include "platform/clipboard.h"
#include "platform/keys.h"
#include "platform/window_system.h"
#include "platform_linux/x11_desktop.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_peer.h"

#include <QElapsedTimer>
#include <QTest>

using namespace nivora;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using linuxdesktop::X11Desktop;
using test::X11Peer;

namespace {
xcb_window_t openWindow(X11Peer &peer, const QByteArray &classes)
{
    const xcb_window_t window = peer.createWindow(0);
    peer.setProperty(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, classes);
    xcb_map_window(peer.xcb(), window);
    peer.synchronise();
    return window;
}

xcb_window_t activeId(const X11Desktop &, platform::WindowSystem &windows)
{
    const auto active = windows.activeWindow();
    return active ? active->id : XCB_NONE;
}

} // namespace

class TestX11Windows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_managed.start({.accessibility = false}), qPrintable(m_managed.error()));
        QVERIFY2(m_bare.start({.windowManager = false, .accessibility = false}),
                 qPrintable(m_bare.error()));
    }

    void activeWindowIsDescribed()
    {
        X11Desktop desktop(m_managed.displayName());
        auto &windows = desktop.windowSystem();
        X11Peer peer(m_managed.displayName());
        const auto window = openWindow(peer, QByteArray("letter\0Letter", 14));

        QTRY_COMPARE(activeId(desktop, windows), window);
        const platform::ForeignWindow expected{window, QCoreApplication::applicationPid(),
                                               u"Letter"_s, u"letter"_s};
        QCOMPARE(windows.activeWindow(), expected);
    }

    void focusFollowsActivation()
    {
        X11Desktop desktop(m_managed.displayName());
        auto &windows = desktop.windowSystem();
        X11Peer peer(m_managed.displayName());
        const auto first = openWindow(peer, QByteArray("a\0A", 4));
        QTRY_VERIFY(windows.hasInputFocus(first));
        const auto second = openWindow(peer, QByteArray("b\0B", 4));
        QTRY_VERIFY(windows.hasInputFocus(second));
        QVERIFY(!windows.hasInputFocus(first));
        windows.requestActivation(first);
        QTRY_VERIFY(windows.hasInputFocus(first));

        // A field inside the window has the keys: they still go to the window.
        const auto field = peer.createWindow(0, first);
        xcb_map_window(peer.xcb(), field);
        xcb_set_input_focus(peer.xcb(), XCB_INPUT_FOCUS_PARENT, field, XCB_CURRENT_TIME);
        peer.synchronise();
        QVERIFY(windows.hasInputFocus(first));
        QVERIFY(!windows.hasInputFocus(field));

        xcb_destroy_window(peer.xcb(), first);
        peer.synchronise();
        QTRY_VERIFY(windows.hasInputFocus(second));
        windows.requestActivation(first);
        QVERIFY(windows.hasInputFocus(second));
    }

    void windowWithoutAManagerIsFoundByTheFocus()
    {
        X11Desktop desktop(m_bare.displayName());
        auto &windows = desktop.windowSystem();
        X11Peer peer(m_bare.displayName());
        const auto window = openWindow(peer, QByteArray("a\0A", 4));
        const auto field = peer.createWindow(0, window);
        xcb_map_window(peer.xcb(), field);
        xcb_set_input_focus(peer.xcb(), XCB_INPUT_FOCUS_NONE, field, XCB_CURRENT_TIME);
        peer.synchronise();
        QCOMPARE(activeId(desktop, windows), window);
        QVERIFY(windows.hasInputFocus(window));

        // What a manager that crashed has left behind does not count.
        const auto stale = peer.createWindow(0);
        for (const char *name : {"_NET_ACTIVE_WINDOW", "_NET_SUPPORTING_WM_CHECK"})
            xcb_change_property(peer.xcb(), XCB_PROP_MODE_REPLACE, peer.root(), peer.atom(name),
                                XCB_ATOM_WINDOW, 32, 1, &stale);
        peer.synchronise();
        QCOMPARE(activeId(desktop, windows), window);

        xcb_destroy_window(peer.xcb(), window);
        peer.synchronise();
        QVERIFY(!windows.activeWindow());
        QVERIFY(!windows.hasInputFocus(window));
    }

    void focusIsMovedWhereNobodyElseDoes()
    {
        X11Desktop desktop(m_bare.displayName());
        auto &windows = desktop.windowSystem();
        X11Peer peer(m_bare.displayName());
        const auto editor = openWindow(peer, QByteArray("a\0A", 4));
        const auto field = peer.createWindow(0, editor);
        xcb_map_window(peer.xcb(), field);
        xcb_set_input_focus(peer.xcb(), XCB_INPUT_FOCUS_NONE, field, XCB_CURRENT_TIME);
        peer.synchronise();
        const auto focus = [&] {
            const auto reply = X11Peer::hold(
                xcb_get_input_focus_reply(peer.xcb(), xcb_get_input_focus(peer.xcb()), nullptr));
            return reply->focus;
        };
        QCOMPARE(activeId(desktop, windows), editor);

        const auto panel = openWindow(peer, QByteArray("b\0B", 4));
        windows.requestActivation(panel);
        QTRY_VERIFY(windows.hasInputFocus(panel));
        // It goes: the field has the keys again.
        xcb_unmap_window(peer.xcb(), panel);
        peer.synchronise();
        QTRY_COMPARE(focus(), field);

        xcb_map_window(peer.xcb(), panel);
        peer.synchronise();
        windows.requestActivation(panel);
        QTRY_VERIFY(windows.hasInputFocus(panel));
        windows.requestActivation(editor);
        QTRY_COMPARE(focus(), field);
        // What it had has been taken back already.
        xcb_set_input_focus(peer.xcb(), XCB_INPUT_FOCUS_NONE, editor, XCB_CURRENT_TIME);
        xcb_unmap_window(peer.xcb(), panel);
        peer.synchronise();
        QVERIFY(windows.hasInputFocus(editor));
        QCoreApplication::processEvents();
        QCOMPARE(focus(), editor);
    }

    void launcherThatTookTheKeysIsActive()
    {
        X11Desktop desktop(m_managed.displayName());
        auto &windows = desktop.windowSystem();
        X11Peer peer(m_managed.displayName());
        const auto editor = openWindow(peer, QByteArray("a\0A", 4));
        QTRY_VERIFY(windows.hasInputFocus(editor));
        const auto launcher = peer.createWindow(0);
        const uint32_t unmanaged = 1;
        xcb_change_window_attributes(peer.xcb(), launcher, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        peer.setProperty(launcher, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, QByteArray("l\0L", 4));
        xcb_map_window(peer.xcb(), launcher);
        xcb_set_input_focus(peer.xcb(), XCB_INPUT_FOCUS_NONE, launcher, XCB_CURRENT_TIME);
        peer.synchronise();
        QTRY_COMPARE(activeId(desktop, windows), launcher);
        QVERIFY(windows.hasInputFocus(launcher));
        QVERIFY(!windows.hasInputFocus(editor));
    }

    void windowsMayVanishAtAnyTime()
    {
        X11Desktop desktop(m_bare.displayName());
        auto &windows = desktop.windowSystem();
        int found = 0;
        int missed = 0;
        std::atomic<bool> stop = false;
        // Another program opens and closes windows as fast as it can, in a rhythm that
        // changes: in a steady one the two may keep step, and one case is hardly met.
        std::unique_ptr<QThread> other(QThread::create([&] {
            X11Peer peer(m_bare.displayName());
            for (int beat = 0; !stop; ++beat) {
                const auto window = openWindow(peer, QByteArray("fast\0Fast", 10));
                xcb_set_input_focus(peer.xcb(), XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
                for (int i = 0; i <= beat % 7; ++i)
                    peer.synchronise();
                xcb_destroy_window(peer.xcb(), window);
                for (int i = 0; i <= beat % 5; ++i)
                    peer.synchronise();
            }
        }));
        other->start();
        const bool enough = test::waitUntil(
            [&] {
                if (const auto active = windows.activeWindow()) {
                    ++found;
                    windows.hasInputFocus(active->id);
                    windows.requestActivation(active->id);
                } else {
                    ++missed;
                }
                return found >= 10 && missed >= 10;
            },
            10s, 0us);
        stop = true;
        QVERIFY(other->wait(5000));
        QVERIFY(desktop.isValid());
        QVERIFY(enough);
    }

    void programThatHandlesItsEventsAnswers_data()
    {
        QTest::addColumn<bool>("takesQuestions");
        QTest::addColumn<bool>("handlesEvents");
        QTest::addColumn<bool>("responding");
        QTest::newRow("one that answers") << true << true << true;
        QTest::newRow("one that hangs") << true << false << false;
        QTest::newRow("one that takes no questions") << false << false << true;
    }

    void programThatHandlesItsEventsAnswers()
    {
        QFETCH(const bool, takesQuestions);
        QFETCH(const bool, handlesEvents);
        QFETCH(const bool, responding);
        X11Desktop desktop(m_bare.displayName());
        X11Peer program(m_bare.displayName());
        const auto window = program.createWindow(0);
        const auto protocols = program.atom("WM_PROTOCOLS");
        const auto ping = program.atom("_NET_WM_PING");
        if (takesQuestions)
            xcb_change_property(program.xcb(), XCB_PROP_MODE_REPLACE, window, protocols,
                                XCB_ATOM_ATOM, 32, 1, &ping);
        program.onEvent = [&](const xcb_generic_event_t &event) {
            if (!handlesEvents || (event.response_type & 0x7f) != XCB_CLIENT_MESSAGE)
                return;
            auto message = reinterpret_cast<const xcb_client_message_event_t &>(event);
            if (message.type != protocols || message.data.data32[0] != ping)
                return;
            // By the convention the question goes on to the root window.
            message.window = program.root();
            xcb_send_event(program.xcb(), 0, program.root(),
                           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                           reinterpret_cast<const char *>(&message));
        };
        program.synchronise();

        std::optional<bool> answer;
        const auto asked = test::Clock::now();
        const auto bound = responding ? 5000ms : 150ms;
        const platform::Task task =
            desktop.windowSystem().isResponding(window, bound, [&](bool given) { answer = given; });
        QVERIFY(!answer);
        QVERIFY(test::waitUntil([&] { return answer.has_value(); }, 10s, 200us));
        QCOMPARE(answer, responding);
        const double took = test::millisecondsBetween(asked, test::Clock::now());
        QVERIFY2(responding ? took < 1000 : took >= 149, qPrintable(QString::number(took)));
    }

    void everythingIsHarmlessWithoutAServer()
    {
        QTest::ignoreMessage(QtWarningMsg, "no connection to the X server");
        QTest::ignoreMessage(QtWarningMsg, "no connection to the X server");
        QTest::ignoreMessage(QtWarningMsg, "no connection to the X server");
        X11Desktop desktop(":4711");
        QVERIFY(!desktop.isValid());
        QVERIFY(!desktop.keyEventTap().start([](const platform::KeyEvent &) {}));
        QVERIFY(!desktop.hotKey().grab({Qt::Key_O, Qt::ControlModifier}, [] {}));
        QVERIFY(!desktop.keySynthesizer().press({Qt::Key_V, Qt::ControlModifier}));
        QVERIFY(!desktop.windowSystem().activeWindow());
        desktop.clipboard().setText(u"x"_s);
        std::optional<bool> present;
        const auto task =
            desktop.clipboard().readText(5s, [&](const auto &text) { present = text.has_value(); });
        QTRY_COMPARE(present, false);
    }

    void everythingIsHarmlessOnceTheServerIsGone()
    {
        auto session = std::make_unique<test::DesktopSession>();
        QVERIFY2(session->start({.windowManager = false, .accessibility = false}),
                 qPrintable(session->error()));
        auto desktop = std::make_unique<X11Desktop>(session->displayName());
        QVERIFY(desktop->keyEventTap().start([](const platform::KeyEvent &) {}));
        desktop->clipboard().setText(u"x"_s);
        session.reset();

        QTRY_VERIFY(!desktop->isValid());
        QVERIFY(!desktop->windowSystem().activeWindow());
        QVERIFY(!desktop->keySynthesizer().press({Qt::Key_V, Qt::ControlModifier}));
        std::optional<bool> present;
        const auto task =
            desktop->clipboard().read(5s, [&](const auto &items) { present = items.has_value(); });
        QTRY_COMPARE(present, false);
        QElapsedTimer timer;
        timer.start();
        desktop.reset();
        QVERIFY(timer.elapsed() < 500);
    }

private:
    test::DesktopSession m_managed;
    test::DesktopSession m_bare;
};

QTEST_GUILESS_MAIN(TestX11Windows)
#include "tst_x11_windows.moc"
