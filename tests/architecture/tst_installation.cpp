#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Run
{
    int status = -1;
    QString output; // and what it complained about
};

Run run(const QString &program, const QStringList &arguments, const QString &destination = {})
{
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DESTDIR"_s, destination);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60'000))
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList captures(const QByteArray &text, const QString &pattern)
{
    QStringList found;
    QRegularExpressionMatchIterator matches =
        QRegularExpression(pattern, QRegularExpression::MultilineOption)
            .globalMatch(QString::fromUtf8(text));
    while (matches.hasNext())
        found << matches.next().captured(1);
    found.sort();
    return found;
}

} // namespace

// What cmake --install puts in place.
class TestInstallation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const Run installed = run(QStringLiteral(NIVORA_CMAKE),
                                  {u"--install"_s, QStringLiteral(NIVORA_BUILD)}, m_folder.path());
        QVERIFY2(installed.status == 0, qUtf8Printable(installed.output));
        m_prefix = m_folder.path() + QStringLiteral(NIVORA_PREFIX);
        m_entry = contentOf(m_prefix + u"/share/applications/app.nivora.desktop"_s);
    }

    void theDesktopsToolsAccept_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("entry") << u"desktop-file-validate"_s
                               << QStringList{u"share/applications/app.nivora.desktop"_s};
        QTest::newRow("metadata") << u"appstreamcli"_s
                                  << QStringList{u"validate-tree"_s, u"--no-net"_s, u"."_s};
        QTest::newRow("manual") << u"man"_s
                                << QStringList{u"--warnings"_s, u"-l"_s,
                                               u"share/man/man1/nivora.1.gz"_s};
    }
    void theDesktopsToolsAccept()
    {
        QFETCH(QString, tool);
        QFETCH(QStringList, arguments);
        if (QStandardPaths::findExecutable(tool).isEmpty())
            QSKIP("scripts/setup installs the tool.");
        QVERIFY(QDir::setCurrent(m_prefix));
        const Run checked = run(tool, arguments);
        QVERIFY2(checked.status == 0, qUtf8Printable(checked.output));
        QVERIFY2(!checked.output.contains("warning"_L1), qUtf8Printable(checked.output));
    }

    void whatIsStartedIsThere()
    {
        const QByteArray service =
            contentOf(m_prefix + u"/share/dbus-1/services/app.nivora.service"_s);
        const QStringList programs = captures(service + m_entry, u"^Exec=(/\\S+)"_s);
        QCOMPARE(programs.size(), 2);
        for (const QString &each : programs)
            QVERIFY2(QFileInfo(m_folder.path() + each).isExecutable(), qUtf8Printable(each));
    }

    void theEntryOffersEveryAction()
    {
        QStringList known =
            captures(contentOf(QStringLiteral(NIVORA_SOURCES "/app/nivora_app.cpp")),
                     u"\\{\"([a-z-]+)\"_L1, MenuCommand::"_s)
            << u"invoke"_s;
        known.sort();
        QVERIFY(known.size() > 5);
        QCOMPARE(captures(m_entry, u"^\\[Desktop Action (.+)\\]$"_s), known);
        QCOMPARE(captures(m_entry, u"^Exec=gdbus .*ActivateAction (\\S+) \\[\\] \\{\\}$"_s), known);
    }

    void binariesAreHardened_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("isProgram");
        QDirIterator walk(m_prefix, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            QFile file(walk.next());
            if (file.open(QIODevice::ReadOnly) && file.read(4) == "\177ELF")
                QTest::addRow("%s", qUtf8Printable(walk.fileName()))
                    << walk.filePath() << !walk.fileName().endsWith(".so"_L1);
        }
    }
    void binariesAreHardened()
    {
        if (!NIVORA_IS_HARDENED)
            QSKIP("An optimised build is.");
        QFETCH(QString, file);
        QFETCH(bool, isProgram);
        const Run read = run(u"readelf"_s, {u"-W"_s, u"-hldns"_s, file});
        QCOMPARE(read.status, 0);
        QStringList wanted{u"^ +Type: +DYN"_s, u"^ +GNU_RELRO "_s, u"\\(FLAGS_1\\).*\\bNOW\\b"_s,
                           u"^ +GNU_STACK .* RW +0x"_s, u"UND __stack_chk_fail"_s};
        if (isProgram)
            wanted << u"\\(FLAGS_1\\).*\\bPIE\\b"_s;
        // The others call nothing that could be watched.
        if (file.endsWith("/nivora"_L1))
            wanted << u"UND __\\w+_chk@"_s;
        for (const QString &each : wanted)
            QVERIFY2(QRegularExpression(each, QRegularExpression::MultilineOption)
                         .match(read.output)
                         .hasMatch(),
                     qUtf8Printable(each));
#ifdef __x86_64__
        // ENDBR64, where jumps may end. The note that tells the loader so is no sign:
        // it is missing where the distribution's own start files have none.
        QVERIFY(contentOf(file).count("\xF3\x0F\x1E\xFA") > 50);
#endif
    }

private:
    QTemporaryDir m_folder;
    QString m_prefix;
    QByteArray m_entry;
};

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
