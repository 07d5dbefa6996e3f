#include "keyboard_test.h"

#include "platform/idle_monitor.h"

using namespace std::chrono_literals;
using namespace nivora;

class TestX11IdleMonitor : public test::KeyboardTest
{
    Q_OBJECT

private Q_SLOTS:
    void aTouchOfTheKeyboardPutsItOff()
    {
        QVERIFY(startSession() && openWindow());
        bool idle = false;
        const auto wait = m_desktop->idleMonitor().whenIdle(1500ms, [&] { idle = true; });
        QVERIFY(!idle);
        const auto lastTouch = [&] {
            test::Clock::time_point time;
            for (int i = 0; i < 12; ++i) { // together longer than the span
                m_user->press({XK_a});
                time = test::Clock::now();
                test::waitUntil([&] { return idle; }, 200ms);
            }
            return time;
        }();
        QVERIFY(!idle);
        QTRY_VERIFY(idle);
        QVERIFY(test::Clock::now() - lastTouch > 1400ms);
        // Nobody has come back since.
        bool still = false;
        const auto again = m_desktop->idleMonitor().whenIdle(1500ms, [&] { still = true; });
        QTRY_VERIFY_WITH_TIMEOUT(still, 1000);
    }
};

QTEST_GUILESS_MAIN(TestX11IdleMonitor)

#include "tst_x11_idle_monitor.moc"
