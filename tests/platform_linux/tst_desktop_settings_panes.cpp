#include "platform_linux/desktop_settings_panes.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using platform::SettingsPane;

// Settings programs that only write down how they were called.
class TestDesktopSettingsPanes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensThePaneOfTheRunningDesktop_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<SettingsPane>("pane");
        QTest::addColumn<QByteArray>("call"); // empty: nothing can be opened
        const QStringList all{u"gnome-control-center"_s, u"systemsettings"_s,
                              u"xfce4-accessibility-settings"_s, u"xfce4-settings-manager"_s};
        QTest::newRow("GNOME") << "GNOME"_ba << all << SettingsPane::Accessibility
                               << "gnome-control-center universal-access"_ba;
        QTest::newRow("GNOME's own flavour")
            << "ubuntu:GNOME"_ba << all << SettingsPane::ScreenRecording
            << "gnome-control-center privacy"_ba;
        QTest::newRow("KDE") << "KDE"_ba << all << SettingsPane::Accessibility
                             << "systemsettings kcm_access"_ba;
        QTest::newRow("the older KDE")
            << "KDE"_ba << QStringList{u"systemsettings5"_s} << SettingsPane::Microphone
            << "systemsettings5 kcm_pulseaudio"_ba;
        QTest::newRow("Xfce") << "XFCE"_ba << all << SettingsPane::Accessibility
                              << "xfce4-accessibility-settings"_ba;
        QTest::newRow("another desktop with programs of a known one")
            << "i3"_ba << QStringList{u"xfce4-settings-manager"_s} << SettingsPane::ScreenRecording
            << "xfce4-settings-manager"_ba;
        QTest::newRow("none") << "i3"_ba << QStringList() << SettingsPane::Accessibility << ""_ba;
    }

    void opensThePaneOfTheRunningDesktop()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const QStringList, installed);
        QFETCH(const SettingsPane, pane);
        QFETCH(const QByteArray, call);
        const QTemporaryDir folder;
        const QString record = folder.filePath(u"record"_s);
        for (const QString &name : installed) {
            QFile program(folder.filePath(name));
            QVERIFY(program.open(QIODevice::WriteOnly));
            program.write("#!/bin/sh\nprintf '%s\\n' \"${0##*/}${1:+ $*}\" >'" + record.toUtf8() +
                          ".part' && /bin/mv '" + record.toUtf8() + ".part' '" + record.toUtf8() +
                          "'\n");
            program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", folder.path().toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const bool opened = linuxdesktop::DesktopSettingsPanes().open(pane);
        qputenv("PATH", path);

        QCOMPARE(opened, !call.isEmpty());
        if (!opened)
            return;
        QTRY_VERIFY(QFile::exists(record));
        QFile written(record);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll().trimmed(), call);
    }
};

QTEST_GUILESS_MAIN(TestDesktopSettingsPanes)
#include "tst_desktop_settings_panes.moc"
