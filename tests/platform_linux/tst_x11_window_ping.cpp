#include "platform/window_system.h"
#include "platform_linux/x11_desktop.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_peer.h"

#include <QTest>

using namespace nivora;
using namespace std::chrono_literals;
using linuxdesktop::X11Desktop;
using test::X11Peer;

class TestX11WindowPing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void programThatHandlesItsEventsAnswers_data();
    void programThatHandlesItsEventsAnswers();
};

void TestX11WindowPing::programThatHandlesItsEventsAnswers_data()
{
    QTest::addColumn<bool>("takesQuestions");
    QTest::addColumn<bool>("handlesEvents");
    QTest::addColumn<bool>("responding");
    QTest::newRow("one that answers") << true << true << true;
    QTest::newRow("one that hangs") << true << false << false;
    QTest::newRow("one that takes no questions") << false << false << true;
}

void TestX11WindowPing::programThatHandlesItsEventsAnswers()
{
    QFETCH(const bool, takesQuestions);
    QFETCH(const bool, handlesEvents);
    QFETCH(const bool, responding);
    test::DesktopSession session;
    QVERIFY2(session.start({.windowManager = false, .accessibility = false}),
             qPrintable(session.error()));
    X11Desktop desktop(session.displayName());
    X11Peer program(session.displayName());
    const auto window = program.createWindow(0);
    const auto protocols = program.atom("WM_PROTOCOLS");
    const auto ping = program.atom("_NET_WM_PING");
    if (takesQuestions)
        xcb_change_property(program.xcb(), XCB_PROP_MODE_REPLACE, window, protocols, XCB_ATOM_ATOM,
                            32, 1, &ping);
    program.onEvent = [&](const xcb_generic_event_t &event) {
        if (!handlesEvents || (event.response_type & 0x7f) != XCB_CLIENT_MESSAGE)
            return;
        auto message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type != protocols || message.data.data32[0] != ping)
            return;
        // By the convention the question goes on to the root window.
        message.window = program.root();
        xcb_send_event(program.xcb(), 0, program.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
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

QTEST_GUILESS_MAIN(TestX11WindowPing)
#include "tst_x11_window_ping.moc"
