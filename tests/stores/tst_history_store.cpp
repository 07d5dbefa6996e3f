#include "history_fixture.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {
struct Step
{
    QString source;
    QString translation;
    Language to = Language::Japanese;
};

} // namespace

class TestHistoryStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreAddedForWhatIsNew_data()
    {
        QTest::addColumn<QList<Step>>("steps");
        QTest::addColumn<qint64>("rows");
        const QString a = u"見積もり"_s;
        const QString b = u"お見積もり"_s;
        QTest::newRow("blank source") << QList<Step>{{u" \n\u3000"_s, a}} << qint64(0);
        QTest::newRow("blank translation") << QList<Step>{{u"报价"_s, u"\t\u2028"_s}} << qint64(0);
        QTest::newRow("NUL") << QList<Step>{{u"报价\0单"_s, a}} << qint64(0);
        QTest::newRow("the same again")
            << QList<Step>{{u"报价"_s, a}, {u" 报价\n"_s, a + u' '}} << qint64(1);
        QTest::newRow("A, B, A") << QList<Step>{{u"报价"_s, a}, {u"报价"_s, b}, {u"报价"_s, a}}
                                 << qint64(3);
        QTest::newRow("two targets")
            << QList<Step>{{u"报价"_s, a}, {u"报价"_s, a, Language::English}} << qint64(2);
    }

    void rowsAreAddedForWhatIsNew()
    {
        QFETCH(QList<Step>, steps);
        HistoryStore &store = m_history->open();
        for (const Step &step : steps)
            store.record(step.source, step.translation, Language::Chinese, step.to);
        QTEST(m_history->rows(), "rows");
    }

    void theNewestTranslationOfTheSameTextAndTargetAnswers()
    {
        m_history->open().record(u" 报价 "_s, u"古い"_s, Language::Chinese, Language::Japanese);
        HistoryStore &store = m_history->open(); // another start
        store.record(u"报价"_s, u"新しい"_s, Language::TraditionalChinese, Language::Japanese);
        store.record(u"报价"_s, u"quotation"_s, Language::Chinese, Language::English);
        QCOMPARE(store.latestTranslation(u"\n报价"_s, Language::Japanese), u"新しい"_s);
        QCOMPARE(store.latestTranslation(u"报价"_s, Language::Korean), std::nullopt);
        QCOMPARE(store.latestTranslation(u"报价单"_s, Language::Japanese), std::nullopt);
        QCOMPARE(store.latestTranslation(u"报价\0单"_s, Language::Japanese), std::nullopt);
        QCOMPARE(store.latestTranslation(QString(), Language::Japanese), std::nullopt);
    }

    void switchedOffItRecordsNothingAndStillAnswers()
    {
        HistoryStore &store = m_history->open();
        store.record(u"一"_s, u"one"_s, Language::Chinese, Language::English);
        m_history->enabled = false;
        store.record(u"二"_s, u"two"_s, Language::Chinese, Language::English);
        QCOMPARE(store.latestTranslation(u"一"_s, Language::English), u"one"_s);
        QCOMPARE(store.latestTranslation(u"二"_s, Language::English), std::nullopt);
        QCOMPARE(shown(store, [&] { store.setWatched(true); }), QStringList{u"一"_s});
    }

    void searchesMatchLikeTheDatabaseDoes_data()
    {
        QTest::addColumn<QString>("term");
        QTest::addColumn<QStringList>("found");
        const QStringList all{u"Ärger 100%"_s, u"it's"_s, u"Hello World"_s};
        QTest::newRow("none") << u""_s << all;
        QTest::newRow("either text") << u"世界"_s << QStringList{u"Hello World"_s};
        QTest::newRow("ASCII in either case") << u"hELLO w"_s << QStringList{u"Hello World"_s};
        QTest::newRow("other letters as written") << u"ärger"_s << QStringList{};
        QTest::newRow("percent sign") << u"%"_s << all;
        QTest::newRow("percent sign within") << u"o%d"_s << QStringList{u"Hello World"_s};
        QTest::newRow("underscore") << u"_"_s << all;
        QTest::newRow("underscore within") << u"W_rld"_s << QStringList{u"Hello World"_s};
        QTest::newRow("quote") << u"t's"_s << QStringList{u"it's"_s};
        QTest::newRow("backslash") << u"\\"_s << QStringList{};
    }

    void searchesMatchLikeTheDatabaseDoes()
    {
        QFETCH(QString, term);
        HistoryStore &store = m_history->open();
        store.record(u"Hello World"_s, u"你好，世界"_s, Language::English, Language::Chinese);
        store.record(u"it's"_s, u"它是"_s, Language::English, Language::Chinese);
        store.record(u"Ärger 100%"_s, u"烦恼"_s, Language::English, Language::Chinese);
        store.applySearch(term);
        QCOMPARE(store.search(), term);
        const QStringList found = shown(store, [&] { store.setWatched(true); });
        QTEST(found, "found");
        QCOMPARE(store.totalCount(), 3);
    }

    void theLastSearchIsTheOneThatShows()
    {
        HistoryStore &store = m_history->open();
        for (const QString &source : {u"aa"_s, u"ab"_s, u"bb"_s})
            store.record(source, u"。"_s, Language::English, Language::Chinese);
        store.setWatched(true);
        QSignalSpy changed(&store, &HistoryStore::changed);
        store.applySearch(u"a"_s);
        store.applySearch(u"aa"_s);
        QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, 20'000);
        QCOMPARE(store.entries().size(), 1u);
        QCOMPARE(store.entries().front().sourceText, u"aa"_s);
    }

    void whatNobodyWatchesIsNotKept()
    {
        m_history->open().record(u"一"_s, u"one"_s, Language::Chinese, Language::English);
        HistoryStore store([] { return true; }, m_history->path, 1ms);
        const QStringList rows{u"一"_s};
        QCOMPARE(shown(store, [&] { store.setWatched(true); }), rows);
        QCOMPARE(shown(store, [&] { store.setWatched(false); }), QStringList{});
        QCOMPARE(store.totalCount(), 0);
        QCOMPARE(shown(store, [&] { store.setWatched(true); }), rows);
    }

    void theTableIsTheOneThatOtherVersionsKnow()
    {
        HistoryStore &store = m_history->open();
        const double before = double(QDateTime::currentMSecsSinceEpoch()) / 1000;
        store.record(u"报价"_s, u"見積もり"_s, Language::TraditionalChinese, Language::Japanese);
        Sql sql(m_history->path);
        QCOMPARE(sql("PRAGMA journal_mode;"), QStringList{u"wal"_s});
        QCOMPARE(sql("SELECT name||' '||type||' '||\"notnull\"||' '||pk FROM "
                     "pragma_table_info('history');"),
                 (QStringList{u"id TEXT 0 1"_s, u"ts REAL 1 0"_s, u"source TEXT 1 0"_s,
                              u"translation TEXT 1 0"_s, u"from_lang TEXT 1 0"_s,
                              u"to_lang TEXT 1 0"_s}));
        QCOMPARE(sql("SELECT group_concat(name) FROM pragma_index_info('idx_history_lookup');"),
                 QStringList{u"source,to_lang"_s});
        QCOMPARE(sql("SELECT name FROM pragma_index_info('idx_history_ts');"),
                 QStringList{u"ts"_s});
        QCOMPARE(sql("SELECT source,translation,from_lang,to_lang,typeof(ts) FROM history;"),
                 (QStringList{u"报价"_s, u"見積もり"_s, u"traditionalChinese"_s, u"japanese"_s,
                              u"real"_s}));
        const QString id = sql("SELECT id FROM history;").first();
        QVERIFY2(QRegularExpression(u"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s)
                     .match(id)
                     .hasMatch(),
                 qPrintable(id));
        const double at = sql("SELECT ts FROM history;").first().toDouble();
        QVERIFY(at >= before - 0.001 && at <= before + 60);
    }

    void rowsOfOthersShowAsTheyAre()
    {
        HistoryStore &store = m_history->open();
        Sql(m_history->path)("INSERT INTO history VALUES('mine',1234.5,'s','t','klingon','auto');"
                             "INSERT INTO history VALUES('0A1B2C3D-0000-4000-8000-00000000000F',"
                             "1.25,'u','v','english','romaji');");
        shown(store, [&] { store.setWatched(true); });
        const HistoryEntry strange = store.entries().at(0);
        QVERIFY(!strange.id.isNull()); // its row has none: this one is for show only
        QCOMPARE(strange.date, QDateTime::fromMSecsSinceEpoch(1'234'500, Qt::UTC));
        QCOMPARE(strange.from + u' ' + strange.to, u"klingon auto"_s);
        QCOMPARE(shown(store, [&] { store.remove(strange.id); }), (QStringList{u"s"_s, u"u"_s}));
        const HistoryEntry known{QUuid(u"0a1b2c3d-0000-4000-8000-00000000000f"_s),
                                 QDateTime::fromMSecsSinceEpoch(1250, Qt::UTC),
                                 u"u"_s,
                                 u"v"_s,
                                 u"english"_s,
                                 u"romaji"_s};
        QVERIFY(store.entries().at(1) == known);
        QCOMPARE(qHash(store.entries().at(1)), qHash(known));
        QCOMPARE(shown(store, [&] { store.remove(known.id); }), QStringList{u"s"_s});
    }

private:
    std::unique_ptr<History> m_history;

    // What a window would show after the next reading.
    QStringList shown(HistoryStore &store, const std::function<void()> &change)
    {
        QSignalSpy changed(&store, &HistoryStore::changed);
        change();
        if (changed.isEmpty() && !changed.wait(20'000))
            return {u"no reading"_s};
        QStringList sources;
        for (const HistoryEntry &entry : store.entries())
            sources << entry.sourceText;
        return sources;
    }

private Q_SLOTS:
    void init() { m_history = std::make_unique<History>(); }
};

QTEST_GUILESS_MAIN(TestHistoryStore)
#include "tst_history_store.moc"
