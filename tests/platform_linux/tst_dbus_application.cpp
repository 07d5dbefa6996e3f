#include "platform_linux/dbus_application.h"
#include "platform_linux/launch_links.h"

#include "support/desktop_session.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using linuxdesktop::DBusApplication;

// The program's name on a real session bus, called from a second connection as
// a desktop or another start of the program calls it.
class TestDBusApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
                 qUtf8Printable(m_session.error()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toUtf8());
    }

    void aSecondStartBringsTheFirstForward()
    {
        DBusApplication first;
        std::optional<DBusApplication::Role> role;
        auto acquisition = first.acquire({}, [&](auto given) { role = given; });
        QVERIFY(!role);
        QTRY_COMPARE(role, DBusApplication::Role::Primary);

        QSignalSpy activated(&first, &DBusApplication::activated);
        QCOMPARE(call(u"Activate"_s, {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(activated.count(), 1);

        // The program again, as another process.
        auto *second =
            m_session.launch(QCoreApplication::applicationFilePath(), {u"--start-again"_s});
        QVERIFY(second);
        QTRY_COMPARE(activated.count(), 2);
        QTRY_COMPARE(second->state(), QProcess::NotRunning);
        QCOMPARE(second->exitCode(), int(DBusApplication::Role::Secondary));
    }

    void aStartByALinkHandsItOver()
    {
        const QUrl link(u"nivora://signed-in?token=a%2Bb"_s);
        DBusApplication first;
        std::optional<DBusApplication::Role> role;
        QSignalSpy links(&first, &DBusApplication::linkOpened);
        const QSignalSpy activated(&first, &DBusApplication::activated);
        const auto acquisition = first.acquire({link.toString(QUrl::FullyEncoded), u"file:///x"_s},
                                               [&](auto given) { role = given; });
        QTRY_COMPARE(links.count(), 1); // nobody else to open them
        QCOMPARE(role, DBusApplication::Role::Primary);
        auto *second = m_session.launch(QCoreApplication::applicationFilePath(),
                                        {u"--start-again"_s, link.toString(QUrl::FullyEncoded)});
        QVERIFY(second);
        QTRY_COMPARE(links.count(), 2);
        QCOMPARE(links.at(1).first().toUrl(), link);
        QCOMPARE(activated.count(), 0);
        QTRY_COMPARE(second->state(), QProcess::NotRunning);
        // Its own arguments did not show the link any more.
        QCOMPARE(second->readAllStandardOutput(), "hidden"_ba);
    }

    void actionsArriveByName()
    {
        DBusApplication application;
        std::optional<DBusApplication::Role> role;
        auto acquisition = application.acquire({}, [&](auto given) { role = given; });
        QTRY_COMPARE(role, DBusApplication::Role::Primary);
        QSignalSpy requested(&application, &DBusApplication::actionRequested);
        call(u"ActivateAction"_s, {u"panel"_s, QVariant(QVariantList()), QVariantMap()});
        QCOMPARE(requested.count(), 1);
        QCOMPARE(requested.first().first(), u"panel"_s);
    }

    void othersReachNothingElse()
    {
        DBusApplication application;
        std::optional<DBusApplication::Role> role;
        auto acquisition = application.acquire({}, [&](auto given) { role = given; });
        QTRY_COMPARE(role, DBusApplication::Role::Primary);
        const auto described =
            call(u"Introspect"_s, {}, u"org.freedesktop.DBus.Introspectable"_s).arguments();
        QStringList ours;
        QXmlStreamReader xml(described.value(0).toString());
        for (QString interface; !xml.atEnd(); xml.readNext()) {
            if (!xml.isStartElement())
                continue;
            const QString name = xml.attributes().value("name"_L1).toString();
            if (xml.name() == "interface"_L1)
                interface = name;
            else if (QStringList{u"method"_s, u"signal"_s, u"property"_s}.contains(xml.name()) &&
                     !interface.startsWith("org.freedesktop.DBus."_L1))
                ours << interface + u'.' + name;
        }
        const auto standard = u"org.freedesktop.Application."_s;
        QCOMPARE(ours, QStringList({standard + u"Activate"_s, standard + u"Open"_s,
                                    standard + u"ActivateAction"_s}));
    }

    void onlyLinksOfTheProgramAreOpened_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<bool>("opened");
        QTest::newRow("ours") << u"nivora://auth?code=1"_s << true;
        QTest::newRow("ours in capitals") << u"NIVORA://auth?code=1"_s << true;
        QTest::newRow("a file") << u"file:///etc/passwd"_s << false;
        QTest::newRow("a page") << u"https://example.org/nivora:"_s << false;
        QTest::newRow("a command") << u"javascript:alert(1)"_s << false;
        QTest::newRow("broken") << u"nivora://[bad"_s << false;
        QTest::newRow("empty") << u""_s << false;
    }

    void onlyLinksOfTheProgramAreOpened()
    {
        QFETCH(const QString, link);
        QFETCH(const bool, opened);
        DBusApplication application;
        std::optional<DBusApplication::Role> role;
        auto acquisition = application.acquire({}, [&](auto given) { role = given; });
        QTRY_COMPARE(role, DBusApplication::Role::Primary);
        QSignalSpy links(&application, &DBusApplication::linkOpened);
        call(u"Open"_s, {QStringList{link}, QVariantMap()});
        QCOMPARE(links.count(), opened ? 1 : 0);
    }

private:
    static QDBusMessage call(const QString &method, const QVariantList &arguments,
                             const QString &interface = u"org.freedesktop.Application"_s)
    {
        auto connection = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"caller"_s);
        auto message =
            QDBusMessage::createMethodCall(u"app.nivora"_s, u"/app/nivora"_s, interface, method);
        message.setArguments(arguments);
        return connection.call(message, QDBus::BlockWithGui);
    }

    test::DesktopSession m_session;
};

int main(int argc, char *argv[])
{
    const QStringList links = linuxdesktop::takeLaunchLinks(argc, argv);
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(u"--start-again"_s)) {
        QFile arguments(u"/proc/self/cmdline"_s);
        QFile output;
        if (arguments.open(QIODevice::ReadOnly) && output.open(stdout, QIODevice::WriteOnly))
            output.write(arguments.readAll().contains("token") ? "shown" : "hidden");
        DBusApplication again;
        const auto acquisition =
            again.acquire(links, [](auto role) { QCoreApplication::exit(int(role)); });
        return QCoreApplication::exec();
    }
    TestDBusApplication test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_dbus_application.moc"
