#include "platform_linux/xdg_login_item.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace nivora::linuxdesktop;
using namespace Qt::Literals::StringLiterals;

class TestXdgLoginItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDesktopsOwnSettingsCount_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<bool>("enabled");
        const QByteArray plain = "[Desktop Entry]\nType=Application\nExec=nivora\n";
        QTest::newRow("plain") << plain << true;
        QTest::newRow("hidden") << plain + "Hidden=true\n" << false;
        QTest::newRow("not hidden") << plain + "Hidden=false\n" << true;
        QTest::newRow("hidden, spaced") << plain + "Hidden = true\n" << false;
        QTest::newRow("switched off by GNOME") << plain + "X-GNOME-Autostart-enabled=false\n"
                                               << false;
        QTest::newRow("of another group") << plain + "[Desktop Action x]\nHidden=true\n" << true;
        QTest::newRow("nothing to start") << "[Desktop Entry]\nType=Application\n"_ba << false;
        QTest::newRow("empty") << ""_ba << false;
    }

    void theDesktopsOwnSettingsCount()
    {
        QFETCH(QByteArray, entry);
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"app.nivora.desktop"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(entry);
        file.close();
        XdgLoginItem item(folder.path(), u"/usr/bin/nivora"_s);
        QTEST(item.isEnabled(), "enabled");
        QCOMPARE(item.setEnabled(true), std::nullopt);
        QVERIFY(item.isEnabled());
    }

    void unusualPathsAreQuoted()
    {
        const QTemporaryDir folder;
        XdgLoginItem item(folder.path(), u"/opt/a b/$x\\y\"z/100%/nivora"_s);
        QCOMPARE(item.setEnabled(true), std::nullopt);
        QFile file(folder.filePath(u"app.nivora.desktop"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        // Escaped for the Exec key, and its backslashes for the key file.
        QVERIFY(file.readAll().contains("Exec=\"/opt/a b/\\\\$x\\\\\\\\y\\\\\"z/100%%/nivora\""));
    }

    void aFolderThatCannotBeMadeIsReported()
    {
        const QTemporaryDir folder;
        QFile inTheWay(folder.filePath(u"autostart"_s));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        XdgLoginItem item(inTheWay.fileName(), u"/usr/bin/nivora"_s);
        QVERIFY(item.setEnabled(true));
        QVERIFY(!item.isEnabled());
    }
};

QTEST_GUILESS_MAIN(TestXdgLoginItem)
#include "tst_xdg_login_item.moc"
