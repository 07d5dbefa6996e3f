#include "platform/keys.h"
#include "platform/primary_selection.h"
#include "platform_linux/x11_desktop.h"
#include "platform_linux/x11_server_clock.h"
#include "support/clipboard_reading.h"
#include "support/desktop_session.h"
#include "support/wait.h"
#include "support/x11_driver.h"
#include "support/x11_peer.h"

#include <QTest>

#include <X11/keysym.h>
#include <xcb/xtest.h>

using namespace nivora;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using linuxdesktop::X11Desktop;
using platform::PrimarySelection;
using test::X11Driver;
using test::X11Peer;

using Symbols = QList<X11Driver::Symbol>;

namespace {
// A millisecond is all that the server's clock can tell apart.
void nextTick()
{
    const auto start = test::Clock::now();
    test::waitUntil([&] { return test::Clock::now() - start >= 3ms; }, 1s, 500us);
}

} // namespace

class TestX11Primary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.accessibility = false}), qPrintable(m_session.error()));
        m_user = std::make_unique<X11Driver>(m_session.displayName());
        QVERIFY(m_user->isValid());
        m_program = std::make_unique<X11Peer>(m_session.displayName());
    }

    void cleanup() { m_desktop.reset(); }

    void selectionGoesStaleWithInputThatMayEndIt_data()
    {
        QTest::addColumn<Symbols>("keys");
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("stale");
        QTest::newRow("nothing") << Symbols{} << 0 << false;
        QTest::newRow("Shift, twice") << Symbols{XK_Shift_L, XK_Shift_L} << 0 << false;
        QTest::newRow("CapsLock") << Symbols{XK_Caps_Lock, XK_Caps_Lock} << 0 << false;
        QTest::newRow("wheel") << Symbols{} << 5 << false;
        QTest::newRow("letter") << Symbols{XK_a} << 0 << true;
        QTest::newRow("arrow") << Symbols{XK_Right} << 0 << true;
        QTest::newRow("mouse button") << Symbols{} << 1 << true;
        QTest::newRow("right mouse button") << Symbols{} << 3 << true;
    }

    void selectionGoesStaleWithInputThatMayEndIt()
    {
        QFETCH(const Symbols, keys);
        QFETCH(const int, button);
        QFETCH(const bool, stale);
        m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
        m_user->press({XK_a}); // what came before does not count

        nextTick();
        select("text");
        nextTick();
        for (const auto key : keys)
            m_user->press({key});
        if (button != 0) {
            for (const int type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
                xcb_test_fake_input(m_program->xcb(), uint8_t(type), uint8_t(button), 0, XCB_NONE,
                                    0, 0, 0);
            m_program->synchronise();
        }
        const auto selected = read();
        QVERIFY(selected);
        QCOMPARE(selected->text, u"text"_s);
        QCOMPARE(selected->ownerProcessId, QCoreApplication::applicationPid());
        QCOMPARE(selected->stale, stale);

        select("text anew");
        QVERIFY(!read()->stale);
    }

    void selectionFromBeforeTheStartIsFreshUntilInput()
    {
        select("from before");
        m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
        QVERIFY(!read()->stale);
        m_user->press({XK_Shift_L});
        QVERIFY(!read()->stale);
        m_user->press({XK_a});
        QVERIFY(read()->stale);
    }

    void chordLeavesTheSelectionFresh()
    {
        m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
        int fired = 0;
        QVERIFY(m_desktop->hotKey().grab({Qt::Key_O, Qt::ControlModifier | Qt::AltModifier},
                                         [&] { ++fired; }));
        select("text");
        const auto chord = [&] {
            const int before = fired;
            m_user->press({XK_Control_L, XK_Alt_L, XK_o});
            return test::waitUntil([&] { return fired > before; }, 2s);
        };
        QVERIFY(chord());
        QVERIFY(!read()->stale);
        QVERIFY(chord());
        QVERIFY(!read()->stale);
        nextTick();
        m_user->press({XK_o});
        QVERIFY(read()->stale);
    }

    void nothingSelectedGivesNothing()
    {
        m_desktop = std::make_unique<X11Desktop>(m_session.displayName());
        m_program->own(XCB_ATOM_PRIMARY, XCB_NONE);
        QVERIFY(!read());
        select({});
        QVERIFY(!read());
        m_program->onEvent = {}; // offers something and says nothing
        QVERIFY(!read());
    }

    void clockCountsOnWhenTheStampsWrapAround()
    {
        linuxdesktop::X11ServerClock clock;
        const auto before = clock.widen(0xffffff00u);
        QCOMPARE(clock.widen(0x00000064u) - before, 356ms);
        // One that comes late does not turn the clock back.
        QCOMPARE(clock.widen(0xfffffff0u) - before, 356ms);
        QCOMPARE(clock.widen(0x00000065u) - before, 357ms);
    }

private:
    std::optional<PrimarySelection> read()
    {
        return test::await<PrimarySelection>(
            [this](auto done) { return m_desktop->primarySelection().read(2s, std::move(done)); });
    }

    void select(const QByteArray &text)
    {
        m_program->onEvent = [this, text](const xcb_generic_event_t &event) {
            if ((event.response_type & 0x7f) != XCB_SELECTION_REQUEST)
                return;
            const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
            m_program->answer(request, request.target, text);
        };
        m_program->own(XCB_ATOM_PRIMARY, m_program->createWindow(0));
    }

    test::DesktopSession m_session;
    std::unique_ptr<X11Driver> m_user;
    std::unique_ptr<X11Peer> m_program;
    std::unique_ptr<X11Desktop> m_desktop;
};

QTEST_GUILESS_MAIN(TestX11Primary)
#include "tst_x11_primary.moc"
