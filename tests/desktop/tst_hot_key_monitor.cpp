#include "desktop/hot_key_monitor.h"

#include "platform_memory/memory_keys.h"

#include <QTest>

using namespace nivora;
using namespace std::chrono_literals;
using platform::KeyEvent;

namespace {
constexpr auto left = KeyEvent::Key::LeftShift;
constexpr auto right = KeyEvent::Key::RightShift;
constexpr auto other = KeyEvent::Key::Other;

KeyEvent press(KeyEvent::Key key, std::chrono::milliseconds at)
{
    return {KeyEvent::Kind::ModifiersChanged, key, true, at};
}

KeyEvent release(KeyEvent::Key key, std::chrono::milliseconds at)
{
    return {KeyEvent::Kind::ModifiersChanged, key, false, at};
}

KeyEvent keyDown(std::chrono::milliseconds at)
{
    return {KeyEvent::Kind::KeyDown, other, false, at};
}

} // namespace

using Events = QList<KeyEvent>;

class TestHotKeyMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doubleTapsAreToldFromTyping_data()
    {
        QTest::addColumn<Events>("events");
        QTest::addColumn<int>("triggers");
        QTest::newRow("same key") << Events{press(left, 1s), release(left, 1050ms),
                                            press(left, 1200ms)}
                                  << 1;
        QTest::newRow("left then right") << Events{press(left, 1s), press(right, 1200ms)} << 1;
        QTest::newRow("right then left") << Events{press(right, 1s), press(left, 1200ms)} << 1;
        QTest::newRow("exactly the threshold") << Events{press(left, 1s), press(left, 1300ms)} << 1;
        QTest::newRow("a millisecond more") << Events{press(left, 1s), press(left, 1301ms)} << 0;
        QTest::newRow("at time zero") << Events{press(left, 0ms), press(left, 100ms)} << 1;
        QTest::newRow("too late arms anew")
            << Events{press(left, 1s), press(left, 2s), press(left, 2100ms)} << 1;
        QTest::newRow("three presses")
            << Events{press(left, 1s), press(left, 1100ms), press(left, 1200ms)} << 1;
        QTest::newRow("four presses") << Events{press(left, 1s), press(left, 1100ms),
                                                press(left, 1200ms), press(left, 1300ms)}
                                      << 2;
        QTest::newRow("a letter in between")
            << Events{press(left, 1s), keyDown(1050ms), press(left, 1100ms)} << 0;
        QTest::newRow("another modifier in between")
            << Events{press(left, 1s), press(other, 1050ms), press(left, 1100ms)} << 0;
        QTest::newRow("releases alone") << Events{release(left, 1s), release(left, 1100ms)} << 0;
        // A release while the other Shift stays down looks like a press.
        QTest::newRow("one released while the other is held")
            << Events{press(left, 1s), {KeyEvent::Kind::ModifiersChanged, right, true, 1100ms}}
            << 1;
        QTest::newRow("an interruption keeps the first press")
            << Events{press(left, 1s),
                      {KeyEvent::Kind::Interrupted, other, false, 1050ms},
                      press(left, 1100ms)}
            << 1;
    }

    void doubleTapsAreToldFromTyping()
    {
        QFETCH(Events, events);
        memory::MemoryKeyEventTap tap;
        HotKeyMonitor monitor(tap);
        int triggers = 0;
        monitor.onDoubleShift = [&] { ++triggers; };
        QVERIFY(monitor.start());
        for (const KeyEvent &event : events)
            tap.send(event);
        QTEST(triggers, "triggers");
    }

    void aRefusedTapMayBeTriedAgain()
    {
        memory::MemoryKeyEventTap tap;
        tap.setAvailable(false);
        HotKeyMonitor monitor(tap);
        QVERIFY(!monitor.start());
        tap.setAvailable(true);
        QVERIFY(monitor.start());
    }
};

QTEST_GUILESS_MAIN(TestHotKeyMonitor)
#include "tst_hot_key_monitor.moc"
