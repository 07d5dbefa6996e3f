#include "history_fixture.h"

#include "stores/glossary_store.h"

#include "platform_linux/json_preferences.h"
#include "support/wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

#include <unistd.h>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int rounds = 67; // for each of three stores: two hundred in all
constexpr int patience = 10'000;
constexpr int longestLife = 30; // milliseconds from the first state that is written

// One store, whose content is a number: how often it was written. Each write leaves
// something to find out of step if only half of it is there.
class Numbered
{
public:
    virtual ~Numbered() = default;
    // -1 where what is there fits no number.
    virtual qint64 number() = 0;
    virtual void write(qint64 number) = 0;
};

class NumberedPreferences final : public Numbered
{
public:
    explicit NumberedPreferences(const QString &folder)
        : m_preferences(folder + "/app.nivora/defaults.json"_L1)
    {
    }

    qint64 number() override
    {
        const qint64 first = m_preferences.integer(u"first"_s).value_or(0);
        const qint64 last = m_preferences.integer(u"last"_s).value_or(0);
        const auto length = m_preferences.string(u"middle"_s).value_or(QString()).size();
        return first == last && length == lengthFor(first) ? first : -1;
    }

    void write(qint64 number) override
    {
        const platform::PreferenceChange changes[] = {
            {u"first"_s, number},
            {u"middle"_s, QString(lengthFor(number), u'中')},
            {u"last"_s, number}};
        m_preferences.apply(changes);
    }

private:
    static qsizetype lengthFor(qint64 number) { return number * 37 % 5000; }

    linuxdesktop::JsonPreferences m_preferences;
};

class NumberedGlossary final : public Numbered
{
public:
    explicit NumberedGlossary(const QString &folder)
        : m_store(folder + "/app.nivora/glossary.json"_L1)
    {
    }

    // Each write takes the next of the terms, and the last ones are still in theirs.
    qint64 number() override
    {
        const auto &terms = m_store.terms();
        if (terms.empty())
            return 0;
        qint64 newest = 0;
        for (const GlossaryTerm &term : terms)
            newest = std::max(newest, term.zh.toLongLong());
        for (qint64 each = newest; each > std::max<qint64>(0, newest - count); --each) {
            if (terms[std::size_t(each % count)].zh.toLongLong() != each)
                return -1;
        }
        return terms.size() == count ? newest : -1;
    }

    // Fewer than are written a moment later for their number.
    void write(qint64 number) override
    {
        if (m_store.terms().empty()) {
            std::vector<GlossaryTerm> terms;
            for (int place = 0; place < count; ++place)
                terms.push_back({QUuid::createUuid(), QString(), QString::number(place)});
            m_store.append(terms);
        }
        GlossaryTerm term = m_store.terms()[std::size_t(number % count)];
        term.zh = QString::number(number);
        m_store.update(term);
    }

private:
    static constexpr int count = 200;

    GlossaryStore m_store;
};

class NumberedHistory final : public Numbered
{
public:
    explicit NumberedHistory(const QString &folder)
        : m_path(folder + "/Nivora/history.sqlite"_L1)
        , m_store([] { return true; }, m_path)
    {
    }

    qint64 number() override
    {
        test::Sql sql(m_path);
        const QStringList check = sql("PRAGMA integrity_check;");
        const QStringList found = sql("SELECT COUNT(*), COUNT(DISTINCT source) FROM history;");
        if (check != QStringList{u"ok"_s} || found.value(0) != found.value(1))
            return -1;
        const qint64 rows = found.value(0).toLongLong();
        // On a slow disk a look into the history is given up.
        const auto finds = [&] {
            return m_store.latestTranslation(text(rows), Language::Japanese).has_value();
        };
        return rows == 0 || test::waitUntil(finds, 2s) ? rows : -1;
    }

    void write(qint64 number) override
    {
        m_store.record(text(number), u"訳文"_s.repeated(int(number % 400)) + u'。',
                       Language::Chinese, Language::Japanese);
    }

private:
    static QString text(qint64 number) { return u"第%1句"_s.arg(number); }

    QString m_path;
    HistoryStore m_store;
};

std::unique_ptr<Numbered> open(const QString &store, const QString &folder)
{
    if (store == "preferences"_L1)
        return std::make_unique<NumberedPreferences>(folder);
    if (store == "glossary"_L1)
        return std::make_unique<NumberedGlossary>(folder);
    return std::make_unique<NumberedHistory>(folder);
}

// What the stores wait for the disk, and a little less.
constexpr auto storesWait = 49ms;

// The program that is killed: writes one state after the other and tells of each that
// is done, past every buffer. One that its store has given up waiting for is done when
// another reader finds it.
[[noreturn]] void writeUntilKilled(const QString &store, const QString &folder)
{
    QElapsedTimer time;
    time.start();
    const auto numbered = open(store, folder);
    for (qint64 number = numbered->number() + 1;; ++number) {
        numbered->write(number);
        while (time.hasExpired(storesWait.count()) && open(store, folder)->number() != number)
            QThread::msleep(1);
        const QByteArray line = QByteArray::number(number) + '\n';
        if (::write(STDOUT_FILENO, line.constData(), std::size_t(line.size())) != line.size())
            std::_Exit(1);
        time.restart();
    }
}

} // namespace

class TestCrashSafety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledProgramLosesNothingItHadWritten_data()
    {
        QTest::addColumn<QString>("files");
        QTest::newRow("preferences") << u"app.nivora"_s;
        QTest::newRow("glossary") << u"app.nivora"_s;
        QTest::newRow("history") << u"Nivora"_s;
    }
    void aKilledProgramLosesNothingItHadWritten()
    {
        QFETCH(QString, files);
        const QString store = QString::fromUtf8(QTest::currentDataTag());
        const QTemporaryDir folder;
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        int midWrite = 0;
        for (int round = 0; round < rounds; ++round) {
            QProcess writer;
            writer.start(QCoreApplication::applicationFilePath(),
                         {u"--write"_s, store, folder.path()});
            QVERIFY(writer.waitForReadyRead(patience));
            // When it dies is the experiment, not a wait for something.
            QTest::qSleep(random.bounded(longestLife));
            writer.kill();
            QVERIFY(writer.waitForFinished(patience));
            QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
            const qint64 told =
                writer.readAllStandardOutput().trimmed().split('\n').last().toLongLong();
            const qint64 found = open(store, folder.path())->number();
            QVERIFY2(
                found == told || found == told + 1,
                qPrintable(
                    u"told %1, found %2, round %3 of seed %4"_s.arg(told).arg(found).arg(round).arg(
                        seed)));
            midWrite += found == told + 1;
        }
        qInfo("%d of %d deaths came between a write and its report", midWrite, rounds);
        // Nothing was taken for damaged and put aside.
        const QStringList aside = QDir(folder.filePath(files))
                                      .entryList({u"*corrupt*"_s, u"*rejected*"_s, u"*damaged*"_s});
        QCOMPARE(aside, QStringList());
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == "--write"_L1)
        writeUntilKilled(arguments.value(2), arguments.value(3));
    TestCrashSafety test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_crash_safety.moc"
