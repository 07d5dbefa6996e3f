#include "platform_linux/xdg_web_browser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

// An xdg-open that only writes down how it was called.
class TestXdgWebBrowser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_path = qgetenv("PATH");
        QVERIFY(m_folder.isValid());
        qputenv("PATH", m_folder.path().toUtf8());
    }
    void cleanupTestCase() { qputenv("PATH", m_path); }

    void theAnswerIsTheDesktops_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QByteArray>("script"); // empty: not installed
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<bool>("taken");
        const QString page = u"https://x.org/a?b=%2Fc&d=e f'"_s;
        const auto call = "https://x.org/a?b=%2Fc&d=e%20f' 1"_ba;
        QTest::newRow("a browser") << page << "exit 0"_ba << call << true;
        QTest::newRow("no browser") << page << "exit 3"_ba << call << false;
        QTest::newRow("killed") << page << "kill -9 $$"_ba << call << false;
        QTest::newRow("not installed") << page << ""_ba
                                       << ""_ba << false;
        QTest::newRow("no page") << u"file:///etc/passwd"_s << "exit 0"_ba
                                 << ""_ba << false;
    }
    void theAnswerIsTheDesktops()
    {
        QFETCH(const QString, page);
        QFETCH(const QByteArray, script);
        install(script);
        linuxdesktop::XdgWebBrowser browser;
        std::optional<bool> taken;
        const platform::Task task = browser.open(QUrl(page), [&](bool answer) { taken = answer; });
        QVERIFY(!taken);
        QTRY_VERIFY(taken);
        QTEST(*taken, "taken");
        QTEST(record().left(record().lastIndexOf(' ')), "call");
        QVERIFY(!hasChildren()); // whatever ended is gone for good
    }

    void aProgramThatStaysIsTheBrowserAndOutlivesUs()
    {
        install("exec /bin/sleep 60"_ba);
        std::optional<bool> taken;
        {
            linuxdesktop::XdgWebBrowser browser;
            const platform::Task task =
                browser.open(QUrl(u"https://x.org"_s), [&](bool answer) { taken = answer; });
            QTRY_COMPARE_WITH_TIMEOUT(taken, true, 10'000);
        }
        const pid_t process = record().split(' ').last().toInt();
        QVERIFY(process > 0);
        QCOMPARE(getsid(process), process);
        QCOMPARE(kill(process, SIGTERM), 0); // it was there, and is let go
    }

private:
    void install(const QByteArray &script)
    {
        const QString path = m_folder.filePath(u"xdg-open"_s);
        QFile::remove(path);
        QFile::remove(m_folder.filePath(u"record"_s));
        if (script.isEmpty())
            return;
        QFile program(path);
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$* $# $$\" >" + m_folder.filePath(u"record"_s).toUtf8() +
                      '\n' + script + '\n');
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QByteArray record() const
    {
        QFile file(m_folder.filePath(u"record"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }
    static bool hasChildren()
    {
        QFile file(u"/proc/self/task/%1/children"_s.arg(getpid()));
        return file.open(QIODevice::ReadOnly) && !file.readAll().isEmpty();
    }

    QTemporaryDir m_folder;
    QByteArray m_path;
};

QTEST_GUILESS_MAIN(TestXdgWebBrowser)
#include "tst_xdg_web_browser.moc"
