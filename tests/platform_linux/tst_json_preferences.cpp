#include "platform_linux/json_preferences.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace nivora;
using linuxdesktop::JsonPreferences;
using platform::PreferenceChange;
using platform::PreferenceValue;

static std::atomic<std::chrono::milliseconds> timeOfRenaming{};

// In the place of the C library's, so that the disk is as slow as a test wants it.
extern "C" int rename(const char *from, const char *to) noexcept
{
    std::this_thread::sleep_for(timeOfRenaming.load());
    return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

namespace {
// The other process of the tests below, in this same program.
int writeNumbers(const QString &path, const QString &prefix, int count)
{
    JsonPreferences preferences(path);
    for (int i = 0; i < count; ++i) {
        const PreferenceChange changes[] = {{prefix + QString::number(i % 50), qint64{i}},
                                            {u"first"_s, qint64{i}},
                                            {u"second"_s, qint64{i}}};
        preferences.apply(changes);
    }
    return 0;
}

std::unique_ptr<QProcess> startWriter(const QString &path, const QString &prefix, int count)
{
    auto process = std::make_unique<QProcess>();
    process->start(QCoreApplication::applicationFilePath(),
                   {u"--write"_s, path, prefix, QString::number(count)});
    return process;
}

} // namespace

class tst_json_preferences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(u"app.nivora/defaults.json"_s);
        QTest::failOnWarning(QRegularExpression(u"Preferences"_s));
    }

    void valuesSurviveARestart_data()
    {
        QTest::addColumn<PreferenceValue>("value");
        const auto row = [](const char *name, PreferenceValue value) {
            QTest::newRow(name) << value;
        };
        row("true", true);
        row("false", false);
        row("zero", qint64{0});
        row("largest", std::numeric_limits<qint64>::max());
        row("smallest", std::numeric_limits<qint64>::min());
        row("real", 0.1);
        row("huge real", 1e300);
        row("text", u"quote \" line\nend \u4f60\U0001F600"_s);
        row("empty text", u""_s);
        row("text that looks like a date", u"2026-01-02T03:04:05.678Z"_s);
        row("texts", QStringList{u"ja"_s, u""_s});
        row("no texts", QStringList{});
        row("date", QDateTime::fromMSecsSinceEpoch(1767323045678, Qt::UTC));
    }

    void valuesSurviveARestart()
    {
        QFETCH(PreferenceValue, value);
        JsonPreferences(m_path).set(u"key"_s, value);
        QVERIFY(JsonPreferences(m_path).value(u"key"_s) == value);
    }

    void changesByOthersAreTold()
    {
        JsonPreferences preferences(m_path); // there is no folder yet
        QStringList told;
        const auto task = preferences.watch([&](const QStringList &keys) { told += keys; });
        preferences.set(u"own"_s, true);
        JsonPreferences(m_path).set(u"other"_s, u"new"_s);
        QTRY_COMPARE(told, QStringList{u"other"_s});
        QCOMPARE(preferences.string(u"other"_s), u"new"_s);

        QFile file(m_path); // as an editor writes in place
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{\"own\":false}") > 0);
        file.close();
        QTRY_COMPARE(told, (QStringList{u"other"_s, u"own"_s, u"other"_s}));
        QCOMPARE(preferences.boolean(u"own"_s), false);
        QVERIFY(!preferences.value(u"other"_s));
    }

    void wholeRealReadsBackAsEitherNumber()
    {
        JsonPreferences(m_path).set(u"key"_s, 120.0);
        const JsonPreferences restarted(m_path);
        QCOMPARE(restarted.number(u"key"_s), 120.0);
        QCOMPARE(restarted.integer(u"key"_s), 120);
    }

    void whatJsonCannotHoldIsAbsent_data()
    {
        QTest::addColumn<PreferenceValue>("value");
        QTest::newRow("infinity") << PreferenceValue(std::numeric_limits<double>::infinity());
        QTest::newRow("not a number") << PreferenceValue(std::numeric_limits<double>::quiet_NaN());
        QTest::newRow("invalid date") << PreferenceValue(QDateTime());
    }

    void whatJsonCannotHoldIsAbsent()
    {
        QFETCH(PreferenceValue, value);
        JsonPreferences preferences(m_path);
        preferences.set(u"key"_s, value);
        QVERIFY(!preferences.value(u"key"_s));
        QVERIFY(!JsonPreferences(m_path).value(u"key"_s));
    }

    void foreignMembersStayAndAreAbsent()
    {
        writeFile(R"({"future":{"a":[1,null]},"mixed":["a",1],"nothing":null,"mine":1})"_ba);
        JsonPreferences preferences(m_path);
        for (const auto &key : {u"future"_s, u"mixed"_s, u"nothing"_s})
            QVERIFY(!preferences.value(key));
        preferences.remove(u"mine"_s);
        preferences.set(u"other"_s, true);
        QTRY_COMPARE(
            readObject(),
            QJsonDocument::fromJson(
                R"({"future":{"a":[1,null]},"mixed":["a",1],"nothing":null,"other":true})"_ba)
                .object());
    }

    void fileAndFolderAreTheUsersAlone()
    {
        JsonPreferences(m_path).set(u"key"_s, true);
        const auto owner =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QCOMPARE(QFile::permissions(m_path), owner);
        QCOMPARE(QFile::permissions(QFileInfo(m_path).path()),
                 owner | QFile::ExeOwner | QFile::ExeUser);
    }

    void corruptFileIsKeptAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << ""_ba;
        QTest::newRow("array") << "[1]"_ba;
        QTest::newRow("cut off") << R"({"apiBaseURL": "https://pri)"_ba;
        QTest::newRow("binary") << QByteArray("\0\xff\xfe", 3);
    }

    void corruptFileIsKeptAside()
    {
        QFETCH(QByteArray, content);
        for (int round = 1; round <= 2; ++round) {
            writeFile(content);
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression(u"^Preferences: \\S+ is no JSON object[^{]*$"_s));
            JsonPreferences preferences(m_path);
            preferences.set(u"key"_s, round);
            QTRY_COMPARE(JsonPreferences(m_path).integer(u"key"_s), round);

            const QDir folder = QFileInfo(m_path).dir();
            const auto kept = folder.entryList({u"defaults.json.corrupt-*"_s});
            QCOMPARE(kept.size(), round);
            for (const auto &name : kept) {
                QFile file(folder.filePath(name));
                QVERIFY(file.open(QIODevice::ReadOnly));
                QCOMPARE(file.readAll(), content);
            }
        }
    }

    void fileThatTurnsCorruptIsKeptAsideAndWrittenAnew()
    {
        JsonPreferences preferences(m_path);
        preferences.set(u"old"_s, true);
        QTRY_VERIFY(readObject().contains(u"old"_s));
        writeFile("oops"_ba);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is no JSON object"_s));
        preferences.set(u"new"_s, true);
        QTRY_COMPARE(readObject(), (QJsonObject{{u"old"_s, true}, {u"new"_s, true}}));
    }

    void symbolicLinkStaysOne()
    {
        QDir().mkpath(m_folder->filePath(u"dotfiles"_s));
        const QString target = m_folder->filePath(u"dotfiles/nivora.json"_s);
        QDir().mkpath(QFileInfo(m_path).path());
        // Relative, and at first without a target.
        QVERIFY(QFile::link(u"../dotfiles/nivora.json"_s, m_path));
        for (const qint64 value : {1, 2}) {
            JsonPreferences(m_path).set(u"key"_s, value);
            QVERIFY(QFileInfo(m_path).isSymbolicLink());
            QCOMPARE(JsonPreferences(target).integer(u"key"_s), value);
        }
    }

    void twoProcessesKeepEachOthersChanges()
    {
        const auto one = startWriter(m_path, u"one"_s, 200);
        const auto two = startWriter(m_path, u"two"_s, 200);
        QVERIFY(one->waitForFinished() && two->waitForFinished());
        QCOMPARE(one->exitCode() + two->exitCode(), 0);
        const JsonPreferences preferences(m_path);
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(preferences.integer(u"one"_s + QString::number(i)), 150 + i);
            QCOMPARE(preferences.integer(u"two"_s + QString::number(i)), 150 + i);
        }
    }

    void stuckProcessCostsOneBoundedWait()
    {
        auto preferences = std::make_unique<JsonPreferences>(m_path);
        preferences->set(u"key"_s, 1);
        QFile lock(m_path + u".lock"_s);
        QVERIFY(lock.open(QIODevice::ReadWrite));
        QTRY_COMPARE(::flock(lock.handle(), LOCK_EX | LOCK_NB), 0);

        QElapsedTimer timer;
        timer.start();
        preferences->set(u"key"_s, 2);
        QVERIFY2(timer.elapsed() >= 95 && timer.elapsed() < 200, "not the stated 100 ms");
        timer.restart();
        preferences->set(u"key"_s, 3);
        QVERIFY(timer.elapsed() < 50);
        QCOMPARE(preferences->integer(u"key"_s), 3);
        // Passed over in the end, and at the end.
        QCOMPARE(JsonPreferences(m_path).integer(u"key"_s), 1);
        QTRY_COMPARE(JsonPreferences(m_path).integer(u"key"_s), 3);
        preferences->set(u"key"_s, 4);
        preferences.reset();
        QCOMPARE(JsonPreferences(m_path).integer(u"key"_s), 4);
    }

    void busyDiskCostsOneBoundedWait()
    {
        auto preferences = std::make_unique<JsonPreferences>(m_path);
        preferences->set(u"first"_s, 1);
        QTRY_COMPARE(readObject(), (QJsonObject{{u"first"_s, 1}}));
        timeOfRenaming = 400ms;
        const auto atOnceAgain = qScopeGuard([] { timeOfRenaming = 0ms; });

        QElapsedTimer timer;
        timer.start();
        preferences->set(u"first"_s, 2);
        QVERIFY(timer.elapsed() < 150);
        timer.restart();
        preferences->set(u"second"_s, 3);
        QVERIFY(timer.elapsed() < 50);
        QCOMPARE(preferences->integer(u"first"_s), 2);
        QTRY_COMPARE(readObject(), (QJsonObject{{u"first"_s, 2}, {u"second"_s, 3}}));
        preferences->set(u"third"_s, 4);
        preferences.reset(); // waits for the disk
        QCOMPARE(JsonPreferences(m_path).integer(u"third"_s), 4);
    }

    void withoutAFolderItWorksInMemoryUntilThereIsOne()
    {
        QFile blocker(QFileInfo(m_path).path());
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        JsonPreferences preferences(m_path);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot be written$"_s));
        preferences.set(u"one"_s, 1);
        preferences.set(u"two"_s, 2);
        QCOMPARE(preferences.integer(u"one"_s), 1);

        QVERIFY(blocker.remove());
        preferences.set(u"three"_s, 3);
        QTRY_COMPARE(readObject(), (QJsonObject{{u"one"_s, 1}, {u"two"_s, 2}, {u"three"_s, 3}}));
    }

    void whatCannotBeReadIsLeftAlone()
    {
        QDir().mkpath(m_path);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot be read"_s));
        JsonPreferences preferences(m_path);
        preferences.set(u"one"_s, 1);
        QCOMPARE(preferences.integer(u"one"_s), 1);
        QVERIFY(QFileInfo(m_path).isDir());
    }

private:
    void writeFile(const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    QJsonObject readObject() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == u"--write"_s)
        return writeNumbers(arguments.value(2), arguments.value(3), arguments.value(4).toInt());
    tst_json_preferences test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_json_preferences.moc"
