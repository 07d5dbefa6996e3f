#include "history_fixture.h"

#include "support/wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
// What other processes do with the history: record `rows` rows, each with a text
// of its own, saying so on standard output; for ever, if `rows` is 0.
int recordRows(const QString &path, const QString &name, int rows)
{
    HistoryStore store([] { return true; }, path);
    for (int i = 0; rows == 0 || i < rows; ++i) {
        store.record(name + QString::number(i), u"x"_s.repeated(500), Language::English,
                     Language::Chinese);
        std::ignore = ::write(STDOUT_FILENO, ".", 1);
    }
    return 0;
}

std::unique_ptr<QProcess> startRecording(const History &history, const QString &name, int rows)
{
    auto process = std::make_unique<QProcess>();
    process->start(QCoreApplication::applicationFilePath(),
                   {u"record"_s, history.path, name, QString::number(rows)});
    return process;
}

QStringList errorLines;

void keepErrors(QtMsgType type, const QMessageLogContext &, const QString &line)
{
    if (type == QtCriticalMsg)
        errorLines << line;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

mode_t modeOf(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

bool recordsAndAnswers(HistoryStore &store)
{
    const QString source = QUuid::createUuid().toString();
    store.record(source, u"x"_s, Language::English, Language::Chinese);
    return store.latestTranslation(source, Language::Chinese) == u"x"_s;
}

// A row that takes its time is known until it turns out to be lost.
bool recordsInVain(HistoryStore &store)
{
    store.record(u"lost"_s, u"x"_s, Language::English, Language::Chinese);
    return waitUntil([&] { return !store.latestTranslation(u"lost"_s, Language::Chinese); }, 5s);
}

} // namespace

class TestHistoryFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nobodyElseCanReadIt()
    {
        const QString folder = m_history->folder.filePath(u"Nivora"_s);
        QVERIFY(QDir().mkdir(folder));
        for (const char *suffix : {"", "-wal", "-shm"}) // as a careless version left them
            write(m_history->path + QLatin1StringView(suffix), {});
        QFile::setPermissions(m_history->path, QFile::Permissions(0x6666));
        QFile::setPermissions(folder, QFile::Permissions(0x7777));
        const mode_t mask = ::umask(0);
        QVERIFY(recordsAndAnswers(m_history->open()));
        ::umask(mask);
        QCOMPARE(modeOf(folder), 0700u);
        const QStringList files = QDir(folder).entryList(QDir::Files);
        QCOMPARE(files.size(), 3); // database, log and index of the log
        for (const QString &file : files)
            QCOMPARE(modeOf(folder + u'/' + file), 0600u);
    }

    void withoutAPlaceTheHistoryIsEmpty_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<QString>("line");
        const QString failed = u"history: 打开 SQLite 失败"_s;
        QTest::newRow("a file for a folder") << u"file"_s << failed;
        QTest::newRow("a folder for the file") << u"folder"_s << failed;
        QTest::newRow("a read-only folder") << u"read-only"_s << failed;
        QTest::newRow("a read-only folder with a history")
            << u"read-only history"_s << u"history SQL: attempt to write a readonly database"_s;
        QTest::newRow("a folder of somebody else") << u"foreign"_s << failed;
    }

    void withoutAPlaceTheHistoryIsEmpty()
    {
        QFETCH(QString, obstacle);
        const QString folder = m_history->folder.filePath(u"Nivora"_s);
        const bool asNobody = ::geteuid() == 0; // root may write everywhere
        const uid_t user = asNobody ? 65534 : ::geteuid();
        if (obstacle == u"foreign" && !asNobody)
            QSKIP("Only root can give a folder away");
        if (obstacle == u"read-only history")
            QVERIFY(recordsAndAnswers(m_history->open()));
        m_history->store.reset();
        if (obstacle == u"file")
            write(folder, {});
        else
            QDir().mkpath(obstacle == u"folder" ? m_history->path : folder);
        const QByteArray name = QFile::encodeName(folder);
        if (asNobody && obstacle != u"foreign") {
            for (const QString &path : {m_history->folder.path(), folder, m_history->path})
                std::ignore = ::chown(QFile::encodeName(path).constData(), user, user);
        }
        ::chmod(name.constData(), obstacle.startsWith(u"read-only") ? 0500 : 0777);
        ::chmod(QFile::encodeName(m_history->folder.path()).constData(), 0755);

        QCOMPARE(::seteuid(user), 0);
        HistoryStore &store = m_history->open();
        const bool answers = recordsAndAnswers(store);
        store.setWatched(true);
        store.applySearch(u"x"_s);
        store.remove(QUuid::createUuid());
        store.clear();
        if (asNobody)
            QCOMPARE(::seteuid(0), 0);
        QVERIFY(!answers);
        QVERIFY(store.entries().empty());
        QFETCH(QString, line);
        QCOMPARE(errorLines, QStringList{line});
    }

    void whatIsNoDatabaseIsKeptAside_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("text") << "These are somebody's notes.\n"_ba.repeated(100);
        QTest::newRow("three bytes") << "abc"_ba;
        QTest::newRow("the beginning of a database")
            << "SQLite format 3\0\x10\0\x02\x02\0\x40\x20\x20"_ba + QByteArray(500, '\x7f');
    }

    void whatIsNoDatabaseIsKeptAside()
    {
        QFETCH(QByteArray, bytes);
        QDir().mkpath(m_history->folder.filePath(u"Nivora"_s));
        write(m_history->path, bytes);
        QVERIFY(recordsAndAnswers(m_history->open()));
        QCOMPARE(errorLines.size(), 1);
        QVERIFY(recordsAndAnswers(m_history->open())); // the next start has nothing to say
        QCOMPARE(m_history->rows(), 2);
        QCOMPARE(errorLines.size(), 1);

        const QDir folder(m_history->folder.filePath(u"Nivora"_s));
        const QStringList kept = folder.entryList({u"history.sqlite.corrupt-*"_s});
        QCOMPARE(kept.size(), 1);
        QVERIFY2(errorLines.first().contains(kept.first()), qPrintable(errorLines.first()));
        QFile file(folder.filePath(kept.first()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), bytes);
    }

    void aFileLostWhileRunningIsReplaced_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<bool>("isWatched");
        QTest::addColumn<int>("kept");
        const QString overwrite =
            u"dd if=/dev/urandom of=history.sqlite bs=4096 count=9 conv=notrunc seek="_s;
        QTest::newRow("deleted") << u"rm history.sqlite*"_s << false << 0;
        QTest::newRow("deleted, seen by the list") << u"rm history.sqlite*"_s << true << 0;
        QTest::newRow("deleted without its log") << u"rm history.sqlite"_s << false << 0;
        QTest::newRow("deleted with its folder") << u"rm -r ../Nivora"_s << false << 0;
        QTest::newRow("put back from a copy")
            << u"cp history.sqlite copy; rm history.sqlite*; mv copy history.sqlite"_s << false
            << 0;
        QTest::newRow("overwritten") << overwrite + u'0' << false << 1;
        QTest::newRow("overwritten but for the schema") << overwrite + u'1' << false << 1;
        QTest::newRow("overwritten, seen by the list") << overwrite + u'1' << true << 1;
        QTest::newRow("emptied") << u": > history.sqlite"_s << false << 1;
    }

    void aFileLostWhileRunningIsReplaced()
    {
        QFETCH(QString, command);
        QFETCH(bool, isWatched);
        QFETCH(int, kept);
        HistoryStore &store = m_history->open();
        HistoryStore other([] { return true; }, m_history->path);
        QVERIFY(recordsAndAnswers(store) && recordsAndAnswers(other));
        // What a connection still has in its memory would hide the damage.
        Sql(m_history->path)("PRAGMA wal_checkpoint(TRUNCATE);");
        QProcess shell;
        shell.setWorkingDirectory(m_history->folder.filePath(u"Nivora"_s));
        shell.start(u"sh"_s, {u"-c"_s, command});
        QVERIFY(shell.waitForFinished() && shell.exitCode() == 0);

        if (isWatched) {
            QSignalSpy changed(&store, &HistoryStore::changed);
            store.setWatched(true);
            QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), 20'000);
            QVERIFY(store.entries().empty());
        }
        QVERIFY(recordsAndAnswers(store) && recordsAndAnswers(other) && recordsAndAnswers(store));
        QCOMPARE(errorLines.size(), kept);
        QCOMPARE(QDir(shell.workingDirectory()).entryList({u"*.corrupt-*Z"_s}).size(), kept);
        m_history->store.reset(); // which leaves the other one's log alone
        QVERIFY(recordsAndAnswers(other));
        QCOMPARE(Sql(m_history->path)("PRAGMA integrity_check;"), QStringList{u"ok"_s});
        QCOMPARE(m_history->rows(), command.startsWith(u"cp") ? 6 : 4);
    }

    void aDamagedFileThatMustStayEndsIt()
    {
        HistoryStore &store = m_history->open();
        QVERIFY(recordsAndAnswers(store));
        Sql(m_history->path)("PRAGMA wal_checkpoint(TRUNCATE);");
        const QString folder = QFileInfo(m_history->path).path();
        QFile file(m_history->path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.write(QByteArray(file.size(), '\x7f'));
        file.close();
        const int lock = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
        QCOMPARE(::flock(lock, LOCK_EX), 0);
        for (int i = 0; i < 3; ++i)
            QVERIFY(recordsInVain(store));
        ::close(lock);
        QCOMPARE(errorLines, QStringList{u"history: 打开 SQLite 失败"_s});
        QVERIFY(QFile::remove(m_history->path)); // by the user, who has read that
        QVERIFY(recordsAndAnswers(store));
    }

    void aLockedDatabaseIsNotWaitedForLong_data()
    {
        QTest::addColumn<bool>("lasts");
        QTest::newRow("for a moment") << false;
        QTest::newRow("for long") << true;
    }

    void aLockedDatabaseIsNotWaitedForLong()
    {
        QFETCH(bool, lasts);
        QVERIFY(recordsAndAnswers(m_history->open()) && recordsAndAnswers(*m_history->store));
        m_history->store.reset();
        auto other = std::make_unique<Sql>(m_history->path);
        (*other)("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE;");

        // The bound is 50 ms altogether; a machine with other work gets more.
        QElapsedTimer elapsed;
        elapsed.start();
        HistoryStore &store = m_history->open();
        store.setWatched(true);
        QVERIFY(recordsAndAnswers(store)); // although it is not written yet
        store.clear();
        QVERIFY(recordsAndAnswers(store)); // and is the only one then
        QVERIFY(elapsed.elapsed() < 500);
        if (lasts)
            QTRY_COMPARE(errorLines, QStringList{u"history SQL: database is locked"_s});
        other.reset();
        QTRY_COMPARE(store.entries().size(), 1u);
        QCOMPARE(m_history->rows(), 1);
        QVERIFY(recordsAndAnswers(store));
    }

    void processesShareOneHistory()
    {
        // Both also make the database, at the same moment.
        const auto one = startRecording(*m_history, u"a"_s, 100);
        const auto two = startRecording(*m_history, u"b"_s, 100);
        for (const auto &process : {one.get(), two.get()}) {
            QVERIFY(process->waitForFinished(60'000));
            QCOMPARE(process->exitCode(), 0);
            QCOMPARE(process->readAllStandardError(), QByteArray());
        }
        QCOMPARE(m_history->rows(), 200);
    }

    void aFullDiskCostsRowsOnly()
    {
        HistoryStore &store = m_history->open();
        QVERIFY(recordsAndAnswers(store));
        rlimit limit;
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlimit full{8 * 1024, limit.rlim_max};
        ::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
        store.record(u"large"_s, u"x"_s.repeated(100'000), Language::English, Language::Chinese);
        const auto lost = store.latestTranslation(u"large"_s, Language::Chinese);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        QVERIFY(!lost);
        QCOMPARE(m_history->rows(), 1);
        QVERIFY(recordsAndAnswers(store)); // room again
        QCOMPARE(Sql(m_history->path)("PRAGMA integrity_check;"), QStringList{u"ok"_s});
    }

    void theTemporaryFolderStandsIn()
    {
        const QString data = m_history->folder.filePath(u"data"_s);
        qputenv("XDG_DATA_HOME", QFile::encodeName(data));
        qputenv("TMPDIR", QFile::encodeName(m_history->folder.path()));
        QCOMPARE(HistoryStore::defaultPath(), data + u"/Nivora/history.sqlite"_s);
        QVERIFY(QDir(data).removeRecursively());
        write(data, {}); // nothing can be made below a file
        QCOMPARE(HistoryStore::defaultPath(), m_history->path);
        QVERIFY(recordsAndAnswers(m_history->open()));
    }

private:
    std::unique_ptr<History> m_history;

private Q_SLOTS:
    void init()
    {
        m_history = std::make_unique<History>();
        errorLines.clear();
        qInstallMessageHandler(keepErrors);
    }
    void cleanup() { qInstallMessageHandler(nullptr); }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"record")
        return recordRows(arguments.value(2), arguments.value(3), arguments.value(4).toInt());
    TestHistoryFaults test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_history_faults.moc"
