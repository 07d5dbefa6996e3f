#include "support/desktop_session.h"
#include "support/wait.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using nivora::test::DesktopSession;
using nivora::test::waitUntil;

namespace {

// Processes whose environment names the folder.
QStringList processesOf(const QString &folder)
{
    QStringList found;
    const auto entries = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto &entry : entries) {
        QFile environ(u"/proc/%1/environ"_s.arg(entry));
        QFile name(u"/proc/%1/comm"_s.arg(entry));
        if (entry.toInt() > 0 && environ.open(QIODevice::ReadOnly) &&
            environ.readAll().contains("NIVORA_TEST_SESSION=" + folder.toUtf8() + '\0') &&
            name.open(QIODevice::ReadOnly))
            found.append(QString::fromUtf8(name.readAll().trimmed()));
    }
    return found;
}

QString runInside(DesktopSession &session, const QString &program, const QStringList &arguments,
                  const QByteArray &input = {})
{
    QProcess process;
    process.setProcessEnvironment(session.environment());
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(10'000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

// This program again, as the owner of a session that it ends or abandons.
const auto ownerArgument = u"--own-a-session"_s;

int ownSession(bool crash)
{
    DesktopSession session;
    if (!session.start({.keyring = true}) || !session.launch(u"mousepad"_s))
        return 1;
    std::fputs(qPrintable(session.folder()), stdout);
    std::fflush(stdout);
    if (crash)
        std::raise(SIGKILL);
    return 0;
}

} // namespace

class TestDesktopSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offersEverythingThatWasAskedFor()
    {
        DesktopSession session;
        QElapsedTimer timer;
        timer.start();
        QVERIFY2(session.start({.screenSize = {800, 600}, .keyring = true}),
                 qPrintable(session.error()));
        qInfo() << "the session is up after" << timer.elapsed() << "ms";

        QCOMPARE(session.screenshot().size(), QSize(800, 600));
        QVERIFY(!session.accessibilityBusAddress().isEmpty());

        const QStringList attributes{u"service"_s, u"app.nivora.test"_s};
        runInside(session, u"secret-tool"_s,
                  QStringList{u"store"_s, u"--label=test"_s} + attributes, "hidden");
        QCOMPARE(runInside(session, u"secret-tool"_s, QStringList{u"lookup"_s} + attributes),
                 u"hidden"_s);
    }

    void showsOnTheScreenWhatAProgramPaints()
    {
        DesktopSession session;
        QVERIFY2(session.start({}), qPrintable(session.error()));
        QVERIFY(
            session.launch(u"xterm"_s, {u"-bg"_s, u"#123456"_s, u"-geometry"_s, u"+100+100"_s}));
        const auto painted = [&] { return session.screenshot().pixelColor(200, 250); };
        QVERIFY(waitUntil([&] { return painted() == QColor(0x12, 0x34, 0x56); }, 10s));
    }

    void leavesNothingBehind_data()
    {
        QTest::addColumn<bool>("crash");
        QTest::newRow("after its end") << false;
        QTest::newRow("after a crash of its owner") << true;
    }

    void leavesNothingBehind()
    {
        QFETCH(const bool, crash);
        QProcess owner;
        owner.start(QCoreApplication::applicationFilePath(),
                    {ownerArgument, crash ? u"crash"_s : u"end"_s});
        QVERIFY(owner.waitForFinished(30'000));
        QCOMPARE(owner.exitStatus(), crash ? QProcess::CrashExit : QProcess::NormalExit);
        const auto folder = QString::fromUtf8(owner.readAllStandardOutput());
        QVERIFY(!folder.isEmpty());
        QStringList left;
        waitUntil([&] { return (left = processesOf(folder)).isEmpty(); }, 5s, 20ms);
        QCOMPARE(left, QStringList());
        QCOMPARE(QDir(folder).exists(), crash);
        QDir(folder).removeRecursively();
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.value(1) == ownerArgument)
        return ownSession(arguments.value(2) == u"crash"_s);
    TestDesktopSession test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_desktop_session.moc"
