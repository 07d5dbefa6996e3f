#include "platform_linux/portal_appearance.h"
#include "platform_linux/portal_audio_input.h"

#include "platform_memory/memory_audio_input.h"
#include "support/desktop_session.h"
#include "support/settings_portal.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using platform::DesktopAppearance;
using test::SettingsPortal;

namespace {

const auto common = u"org.freedesktop.appearance"_s;
const auto scheme = u"color-scheme"_s;
const auto privacy = u"org.gnome.desktop.privacy"_s;
const auto disableMicrophone = u"disable-microphone"_s;

} // namespace

class TestPortal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_session.start({.windowManager = false, .accessibility = false}),
                 qUtf8Printable(m_session.error()));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_session.busAddress().toUtf8());
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

        SettingsPortal portal(m_session.busAddress(), {{common, {{scheme, 1U}}},
                                                       {u"org.gnome.desktop.interface"_s,
                                                        {{u"enable-animations"_s, false}}}});
        QVERIFY(portal.isValid());
        auto watch = appearance.watch([&](const auto &now) { told.push_back(now); });
        QTRY_COMPARE(told.size(), 1U);
        QCOMPARE(told.back(), (DesktopAppearance{true, true}));

        portal.set(common, scheme, 2U);
        QTRY_COMPARE(told.size(), 2U);
        QCOMPARE(told.back(), (DesktopAppearance{false, true}));
        portal.set(common, scheme, 0U);
        QTRY_COMPARE(told.size(), 3U);
        QCOMPARE(told.back(), (DesktopAppearance{std::nullopt, true}));

        watch.cancel();
        portal.set(common, scheme, 1U);
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
        std::optional<SettingsPortal> portal;
        if (disabled.isValid())
            portal.emplace(m_session.busAddress(),
                           SettingsPortal::Settings{{privacy, {{disableMicrophone, disabled}}}});
        memory::MemoryAudioInput microphone;
        microphone.setGrants(microphoneGrants);
        std::vector<bool> answers;
        const auto request =
            linuxdesktop::PortalAudioInput(microphone).requestAccess([&](bool answer) {
                answers.push_back(answer);
            });
        QTRY_COMPARE(answers, std::vector{granted});
    }

private:
    test::DesktopSession m_session;
};

QTEST_GUILESS_MAIN(TestPortal)
#include "tst_portal.moc"
