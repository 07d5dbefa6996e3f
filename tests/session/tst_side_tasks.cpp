#include "session_test.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::eventStream;
namespace step = localcloud::step;

// What gathers around a finished translation: reading, check translation, other
// phrasings.
class TestSideTasks : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theReadingBelongsToTheJapaneseSide_data();
    void theReadingBelongsToTheJapaneseSide();
    void aReuseHasItsSideLinesToo();
    void aReadingUnderWayDoesNotOutliveItsText_data();
    void aReadingUnderWayDoesNotOutliveItsText();
    void aResultToPutBackIsCheckedInChinese_data();
    void aResultToPutBackIsCheckedInChinese();
    void theCheckShowsWhatIsFitToShow_data();
    void theCheckShowsWhatIsFitToShow();
    void theCheckCountsAmongTheTokens();
    void aRunThatFollowsAtOnceSavesTheCheck();
    void otherPhrasingsComeOnRequest_data();
    void otherPhrasingsComeOnRequest();
    void otherPhrasingsAreForJapaneseResults();
    void aRunSilencesTheSearchForPhrasings();
    void aChosenPhrasingIsTheResult_data();
    void aChosenPhrasingIsTheResult();
    void aPhrasingChosenWhileTextArrivesEndsTheRun();

private:
    static localcloud::Answer phrasings(const QString &lines)
    {
        const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, lines}};
        return localcloud::Answer::json(
            200, {{u"choices"_s, QJsonArray{QJsonObject{{u"message"_s, message}}}}});
    }
};

void TestSideTasks::init()
{
    start();
    m_tokenizer->setTokens({{u"私"_s, u"ワタシ"_s, u"ワタシ"_s}, {u"は"_s, u"ハ"_s, u"ワ"_s}});
}

void TestSideTasks::theReadingBelongsToTheJapaneseSide_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("reading");
    const auto japanese = u"私は"_s;
    const auto kana = u"わたし は"_s;
    QTest::newRow("result") << u"hiragana"_s << u"我是"_s << u"答え"_s << kana;
    QTest::newRow("result, romaji") << u"romaji"_s << u"我是"_s << u"答え"_s << u"watashi wa"_s;
    QTest::newRow("unknown style") << u"x"_s << u"我是"_s << u"答え"_s << kana;
    QTest::newRow("source") << u"hiragana"_s << u" 私は\n"_s << japanese << kana;
    QTest::newRow("off") << u"off"_s << u"我是"_s << u""_s << u""_s;
    QTest::newRow("no Japanese") << u"hiragana"_s << u"hello"_s << u""_s << u""_s;
}

void TestSideTasks::theReadingBelongsToTheJapaneseSide()
{
    QFETCH(QString, style);
    QFETCH(QString, source);
    QFETCH(QString, reading);
    m_settings->readingStyleRaw.set(style);
    QSignalSpy changed(m_session.get(), &TranslationViewModel::readingChanged);
    translate(source, u"答え"_s);
    QTRY_COMPARE(m_session->reading(), reading);
    QCOMPARE(changed.count(), reading.isEmpty() ? 0 : 1);
    m_readings.reset(); // whatever was under way is over
    QTEST(m_tokenizer->asked(), "asked");
    QCOMPARE(m_tokenizer->prepared() > 0, !reading.isEmpty());
    m_session.reset();
}

void TestSideTasks::aReuseHasItsSideLinesToo()
{
    m_settings->showBackTranslation.set(true);
    m_session->historyLookup = [](const QString &, Language) { return std::optional(u"答え"_s); };
    m_server->enqueue(eventStream({u"回答"_s}));
    m_session->setSource(u"我是"_s, true, std::nullopt);
    QVERIFY(m_session->fromHistory());
    QTRY_COMPARE(m_session->reading(), u"わたし は"_s);
    QTRY_COMPARE(m_session->backTranslation(), u"回答"_s);
}

void TestSideTasks::aReadingUnderWayDoesNotOutliveItsText_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("edit") << 0;
    QTest::newRow("manual input") << 1;
    QTest::newRow("blank source") << 2;
    QTest::newRow("another run") << 3;
}

void TestSideTasks::aReadingUnderWayDoesNotOutliveItsText()
{
    QFETCH(int, way);
    m_tokenizer->setHolds(true);
    translate(u"我是"_s, u"答え"_s);
    QTRY_COMPARE(m_tokenizer->calls(), 1);
    QSignalSpy changed(m_session.get(), &TranslationViewModel::readingChanged);
    switch (way) {
    case 0:
        m_session->editSource(u"我"_s);
        break;
    case 1:
        m_session->prepareManualInput(true, std::nullopt);
        break;
    case 2:
        m_session->setSource(u" "_s, true, std::nullopt);
        break;
    default:
        translate(u"hello"_s, u"你好"_s);
    }
    // The next reading has to wait for the one that was given up.
    m_tokenizer->setHolds(false);
    bool nextIsThere = false;
    const auto next = m_readings->read(u"次"_s, ReadingForm::Romaji,
                                       [&](const QString &) { nextIsThere = true; });
    QTRY_VERIFY(nextIsThere);
    QCOMPARE(m_session->reading(), QString());
    QCOMPARE(changed.count(), 0);
}

void TestSideTasks::aResultToPutBackIsCheckedInChinese_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<bool>("wanted");
    QTest::addColumn<bool>("hasInsertTarget");
    QTest::addColumn<bool>("checked");
    QTest::newRow("into a field") << u"报价"_s << true << true << true;
    QTest::newRow("only to read") << u"报价"_s << true << false << false;
    QTest::newRow("switched off") << u"报价"_s << false << true << false;
    QTest::newRow("no Japanese result") << u"hello"_s << true << true << false;
}

void TestSideTasks::aResultToPutBackIsCheckedInChinese()
{
    QFETCH(QString, source);
    QFETCH(bool, wanted);
    QFETCH(bool, hasInsertTarget);
    QFETCH(bool, checked);
    m_settings->showBackTranslation.set(wanted);
    m_settings->japaneseStyleRaw.set(u"polite"_s);
    translate(source, u"答え"_s, hasInsertTarget);
    QElapsedTimer rest;
    rest.start();
    m_server->enqueue(eventStream({u"回"_s, u"答"_s}));
    if (!checked) {
        QTest::qWait(600); // longer than the rest before the request
        QCOMPARE(m_server->requests().size(), 1);
        return;
    }
    QTRY_COMPARE(m_session->backTranslation(), u"回答"_s);
    QVERIFY(rest.elapsed() >= 300);
    QCOMPARE(m_server->requests().size(), 2);
    const QJsonObject body = bodyOf(m_server->requests().last());
    QCOMPARE(body[u"text"].toString(), u"答え"_s);
    QCOMPARE(body[u"target"].toString(), u"chinese"_s);
    QVERIFY(!body.contains(u"style"));
    m_session->translateNow();
    QCOMPARE(m_session->backTranslation(), QString());
}

void TestSideTasks::theCheckShowsWhatIsFitToShow_data()
{
    QTest::addColumn<QStringList>("pieces");
    QTest::addColumn<bool>("breaks");
    QTest::addColumn<QString>("shown");
    QTest::newRow("kana at once") << QStringList{u"か"_s, u"回答"_s} << false << u""_s;
    QTest::newRow("kana later") << QStringList{u"回"_s, u"か"_s, u"答"_s} << false << u""_s;
    QTest::newRow("an error after a while") << QStringList{u"回"_s, u"x"_s} << true << u"回"_s;
}

void TestSideTasks::theCheckShowsWhatIsFitToShow()
{
    QFETCH(QStringList, pieces);
    QFETCH(bool, breaks);
    m_settings->showBackTranslation.set(true);
    translate(u"报价"_s, u"答え"_s);
    const auto answer = eventStream(pieces, {.pause = 5ms});
    m_server->enqueue(breaks ? answer.cutAfter(1, step::Reset{}, 60ms) : answer);
    QSignalSpy closed(m_server.get(), &localcloud::Server::connectionClosed);
    QTRY_VERIFY(!closed.isEmpty()); // by either side
    QCOMPARE(m_server->requests().size(), 2);
    QTEST(m_session->backTranslation(), "shown");
    QCOMPARE(phase(), Phase::Kind::Done);
    QCOMPARE(m_session->translatedText(), u"答え"_s);
}

void TestSideTasks::theCheckCountsAmongTheTokens()
{
    std::vector<TokenUsage> recorded;
    m_session->usageRecorder = [&](const TokenUsage &usage) { recorded.push_back(usage); };
    m_settings->showBackTranslation.set(true);
    m_server->enqueue(eventStream(
        {u"答え"_s}, {.usage = localcloud::TokenCounts{1, 2}, .translationId = "main"}));
    m_server->enqueue(eventStream(
        {u"回答"_s}, {.usage = localcloud::TokenCounts{3, 4}, .translationId = "check"}));
    m_session->setSource(u"报价"_s, true, std::nullopt);
    QTRY_COMPARE(m_session->lastTokens(), 10);
    QCOMPARE(recorded, (std::vector<TokenUsage>{{1, 2}, {3, 4}}));
    QCOMPARE(m_session->lastTid(), u"main"_s);
    QCOMPARE(m_recorded.size(), 1);
}

void TestSideTasks::aRunThatFollowsAtOnceSavesTheCheck()
{
    m_settings->showBackTranslation.set(true);
    translate(u"报价"_s, u"答え"_s);
    translate(u"hello"_s, u"你好"_s);
    QTest::qWait(600); // longer than the rest before the request
    QCOMPARE(m_server->requests().size(), 2);
}

void TestSideTasks::otherPhrasingsComeOnRequest_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("some") << 200 << QStringList{u"甲"_s, u"乙"_s};
    QTest::newRow("an error") << 500 << QStringList{};
}

void TestSideTasks::otherPhrasingsComeOnRequest()
{
    QFETCH(int, status);
    translate(u" 报价 "_s, u"答え"_s);
    for (int i = 0; i < 2; ++i) { // the second time begins with an empty list
        m_server->enqueue(status == 200 ? phrasings(u"1. 甲\n2. 乙"_s)
                                        : localcloud::Answer::error(status, u"no"_s));
        m_session->loadVariants();
        QVERIFY(m_session->loadingVariants());
        QCOMPARE(m_session->variants(), QStringList());
        QTRY_VERIFY(!m_session->loadingVariants());
        QTEST(m_session->variants(), "shown");
        QCOMPARE(phase(), Phase::Kind::Done);
    }
    const QJsonObject body = bodyOf(m_server->requests().last());
    QCOMPARE(body[u"text"].toString(), u"报价"_s);
    QCOMPARE(body[u"target"].toString(), u"japanese"_s);
    QCOMPARE(body[u"variantCount"].toInt(), 3);
}

void TestSideTasks::otherPhrasingsAreForJapaneseResults()
{
    QVERIFY(!m_session->canShowVariants());
    translate(u"私は"_s, u"我是"_s); // Japanese is the source here
    QVERIFY(!m_session->canShowVariants());
    m_session->loadVariants();
    QVERIFY(!m_session->loadingVariants());
    translate(u"报价"_s, u"答え"_s);
    QVERIFY(m_session->canShowVariants());
}

void TestSideTasks::aRunSilencesTheSearchForPhrasings()
{
    translate(u"报价"_s, u"答え"_s);
    m_server->enqueue(phrasings(u"甲"_s).delayedBy(50ms));
    m_session->loadVariants();
    QTRY_COMPARE(m_server->requests().size(), 2);
    QSignalSpy changed(m_session.get(), &TranslationViewModel::variantsChanged);
    QSignalSpy closed(m_server.get(), &localcloud::Server::connectionClosed);
    m_session->editSource(u"报"_s);
    QVERIFY(!m_session->loadingVariants());
    QTRY_VERIFY(!closed.isEmpty());
    QCOMPARE(changed.count(), 0);
}

void TestSideTasks::aChosenPhrasingIsTheResult_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("reading");
    QTest::newRow("with a reading") << u"hiragana"_s << u"わたし は"_s;
    QTest::newRow("without") << u"off"_s << u""_s;
}

void TestSideTasks::aChosenPhrasingIsTheResult()
{
    QFETCH(QString, style);
    QFETCH(QString, reading);
    m_settings->readingStyleRaw.set(style);
    m_settings->showBackTranslation.set(true);
    translate(u"报价"_s, u"答え"_s);
    m_server->enqueue(eventStream({u"回"_s, u"x"_s}).cutAfter(1, step::Silence{}));
    QTRY_COMPARE(m_session->backTranslation(), u"回"_s);
    m_server->enqueue(phrasings(u"甲\n乙"_s));
    m_session->loadVariants();
    QTRY_COMPARE(m_session->variants().size(), 2);

    QTRY_COMPARE(m_session->reading(), reading);
    m_session->useVariant(m_session->variants().last());
    QCOMPARE(m_session->translatedText(), u"乙"_s);
    QCOMPARE(m_session->variants(), QStringList());
    QCOMPARE(m_session->backTranslation(), QString());
    QCOMPARE(m_session->reading(), QString()); // until the new one is there
    QTRY_COMPARE(m_session->reading(), reading);
    if (!reading.isEmpty())
        QCOMPARE(m_tokenizer->asked(), u"乙"_s);
    // The check of the old result is given up, and there is none of the new one.
    QTRY_COMPARE(m_server->openConnections(), 1); // kept alive, for the next request
    QTest::qWait(600);
    QCOMPARE(m_server->requests().size(), 3);
    QCOMPARE(m_recorded.size(), 1);
}

void TestSideTasks::aPhrasingChosenWhileTextArrivesEndsTheRun()
{
    m_server->enqueue(
        eventStream({u"答"_s, u"え"_s}, {.pause = 60ms}).cutAfter(1, step::Silence{}));
    m_session->setSource(u"报价"_s, true, std::nullopt);
    QTRY_COMPARE(m_session->translatedText(), u"答"_s);
    m_session->useVariant(u"乙"_s);
    QCOMPARE(phase(), Phase::Kind::Done);
    QTRY_COMPARE(m_server->openConnections(), 0);
    QCOMPARE(m_session->translatedText(), u"乙"_s);
}

QTEST_GUILESS_MAIN(TestSideTasks)
#include "tst_side_tasks.moc"
