#include "platform_linux/x11_server_clock.h"

#include <QTest>

using namespace nivora;
using namespace std::chrono_literals;

class TestX11ServerClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsOnWhenTheStampsWrapAround()
    {
        linuxdesktop::X11ServerClock clock;
        const auto before = clock.widen(0xffffff00u);
        QCOMPARE(clock.widen(0x00000064u) - before, 356ms);
        // One that comes late does not turn the clock back.
        QCOMPARE(clock.widen(0xfffffff0u) - before, 356ms);
        QCOMPARE(clock.widen(0x00000065u) - before, 357ms);
    }
};

QTEST_GUILESS_MAIN(TestX11ServerClock)
#include "tst_x11_server_clock.moc"
