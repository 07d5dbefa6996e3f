#include "platform_linux/portal_appearance.h"
#include "platform_linux/portal_audio_input.h"

#include "platform_memory/memory_audio_input.h"
#include "support/desktop_session.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using platform::DesktopAppearance;
using Settings = QMap<QString, QVariantMap>;

namespace {

const auto common = u"org.freedesktop.appearance"_s;
const auto scheme = u"color-scheme"_s;
const auto privacy = u"org.gnome.desktop.privacy"_s;
const auto disableMicrophone = u"disable-microphone"_s;

} // namespace

// A desktop portal with settings that a test changes.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Settings settings;

public Q_SLOTS:
    QMap<QString, QVariantMap> ReadAll(const QStringList &) { return settings; }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

class TestPortal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
                 qUtf8Printable(m_session.error()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toUtf8());
        qDBusRegisterMetaType<Settings>();
    }

    void tellsTheChoiceAndEachChange()
    {
        std::vector<DesktopAppearance> told;
        linuxdesktop::PortalAppearance appearance;
        // Nothing but silence where there is no portal.
        {
            const auto watch = appearance.watch([&](const auto &now) { told.push_back(now); });
            QTest::qWait(100);
            QVERIFY(told.empty());
        }

        Portal portal;
        portal.settings[common][scheme] = 1U;
        portal.settings[u"org.gnome.desktop.interface"_s][u"enable-animations"_s] = false;
        offer(portal);
        auto watch = appearance.watch([&](const auto &now) { told.push_back(now); });
        QTRY_COMPARE(told.size(), 1U);
        QCOMPARE(told.back(), (DesktopAppearance{true, true}));

        Q_EMIT portal.SettingChanged(common, scheme, QDBusVariant(2U));
        QTRY_COMPARE(told.size(), 2U);
        QCOMPARE(told.back(), (DesktopAppearance{false, true}));
        Q_EMIT portal.SettingChanged(common, scheme, QDBusVariant(0U));
        QTRY_COMPARE(told.size(), 3U);
        QCOMPARE(told.back(), (DesktopAppearance{std::nullopt, true}));

        watch.cancel();
        Q_EMIT portal.SettingChanged(common, scheme, QDBusVariant(1U));
        QTest::qWait(100);
        QCOMPARE(told.size(), 3U);
    }

    void keepsTheMicrophoneWhereTheUserSwitchedItOff_data()
    {
        QTest::addColumn<QVariant>("disabled"); // invalid: there is no portal
        QTest::addColumn<bool>("microphoneGrants");
        QTest::addColumn<bool>("granted");
        QTest::newRow("switched off") << QVariant(true) << true << false;
        QTest::newRow("switched on") << QVariant(false) << true << true;
        QTest::newRow("switched on, refused all the same") << QVariant(false) << false << false;
        QTest::newRow("no portal") << QVariant() << true << true;
    }

    void keepsTheMicrophoneWhereTheUserSwitchedItOff()
    {
        QFETCH(const QVariant, disabled);
        QFETCH(const bool, microphoneGrants);
        QFETCH(const bool, granted);
        Portal portal;
        if (disabled.isValid()) {
            portal.settings[privacy][disableMicrophone] = disabled;
            offer(portal);
        }
        memory::MemoryAudioInput microphone;
        microphone.setGrants(microphoneGrants);
        std::vector<bool> answers;
        const auto request =
            linuxdesktop::PortalAudioInput(microphone).requestAccess([&](bool answer) {
                answers.push_back(answer);
            });
        QTRY_COMPARE(answers, std::vector{granted});
    }

    void cleanup() { QDBusConnection::disconnectFromBus(u"portal"_s); }

private:
    void offer(Portal &portal)
    {
        auto bus = QDBusConnection::connectToBus(m_session.busAddress(), u"portal"_s);
        QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                   QDBusConnection::ExportAllContents));
        QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }

    test::DesktopSession m_session;
};

QTEST_GUILESS_MAIN(TestPortal)
#include "tst_portal.moc"
