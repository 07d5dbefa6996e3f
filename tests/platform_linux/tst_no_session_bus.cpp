#include "platform_linux/dbus_application.h"

#include <QTest>

using namespace nivora;
using linuxdesktop::DBusApplication;

// The program in a session without a message bus.
class TestNoSessionBus : public QObject
{
    Q_OBJECT

public:
    // Before anything connects.
    static void initMain() { qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); }

private Q_SLOTS:
    void theProgramStartsAsTheOnlyOne()
    {
        DBusApplication application;
        std::optional<DBusApplication::Role> role;
        const platform::Task acquisition =
            application.acquire({}, [&](DBusApplication::Role given) { role = given; });
        QVERIFY(!role); // never at once
        QTRY_VERIFY(role);
        QVERIFY(*role == DBusApplication::Role::Primary);
    }
};

QTEST_GUILESS_MAIN(TestNoSessionBus)
#include "tst_no_session_bus.moc"
