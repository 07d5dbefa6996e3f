#include "platform_linux/desktop_tray_hosts.h"
#include "platform_linux/x11_desktop.h"

#include "support/desktop_session.h"
#include "support/status_notifier_host.h"
#include "support/x11_peer.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QTest>

#include <optional>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

namespace {
// Takes calls and never answers.
class Silence : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &, const QDBusConnection &) override { return true; }
};

} // namespace

class TestDesktopTrayHosts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
                 qUtf8Printable(m_session.error()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toUtf8());
    }

    // To show an icon would mean to wait for it.
    void aHostThatHangsIsNoTray()
    {
        auto bus = QDBusConnection::connectToBus(m_session.busAddress(), u"hanging"_s);
        Silence silence;
        QVERIFY(bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, &silence) &&
                bus.registerService(u"org.kde.StatusNotifierWatcher"_s));
        X11Peer tray(m_session.displayName());
        tray.own(tray.atom("_NET_SYSTEM_TRAY_S0"), tray.createWindow(0));
        linuxdesktop::X11Desktop x11(m_session.displayName());
        linuxdesktop::DesktopTrayHosts hosts(x11.trayManager());
        std::optional<bool> present;
        const auto watch = hosts.watch([&](bool now) { present = now; });
        QTest::qWait(2500); // longer than it waits for an answer
        QVERIFY(!present);
        QVERIFY(bus.unregisterService(u"org.kde.StatusNotifierWatcher"_s));
        QTRY_COMPARE(present, std::optional(true));
    }

private:
    DesktopSession m_session;
};

QTEST_GUILESS_MAIN(TestDesktopTrayHosts)
#include "tst_desktop_tray_hosts.moc"
