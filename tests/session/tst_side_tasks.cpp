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
    void init()
    {
        start();
        m_desktop->japaneseTokenizer.setTokens(
            {{u"私"_s, u"ワタシ"_s, u"ワタシ"_s}, {u"は"_s, u"ハ"_s, u"ワ"_s}});
    }

    void theReadingBelongsToTheJapaneseSide_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<QString>("reading");
        const auto kana = u"わたし は"_s;
        QTest::newRow("result") << u"hiragana"_s << u"我是"_s << u"答え"_s << kana;
        QTest::newRow("result, romaji") << u"romaji"_s << u"我是"_s << u"答え"_s << u"watashi wa"_s;
        QTest::newRow("unknown style") << u"x"_s << u"我是"_s << u"答え"_s << kana;
        QTest::newRow("source") << u"hiragana"_s << u" 私は\n"_s << u"私は"_s << kana;
        QTest::newRow("off") << u"off"_s << u"我是"_s << u""_s << u""_s;
        QTest::newRow("no Japanese") << u"hiragana"_s << u"hello"_s << u""_s << u""_s;
    }

    void theReadingBelongsToTheJapaneseSide()
    {
        QFETCH(QString, style);
        QFETCH(QString, source);
        QFETCH(QString, reading);
        m_settings->readingStyleRaw.set(style);
        QSignalSpy changed(m_session.get(), &TranslationViewModel::readingChanged);
        translate(source, u"答え"_s);
        QTRY_COMPARE(m_session->reading(), reading);
        QCOMPARE(changed.count(), reading.isEmpty() ? 0 : 1);
        m_session.reset();
        m_readings.reset(); // whatever was under way is over
        QTEST(m_desktop->japaneseTokenizer.asked(), "asked");
        QCOMPARE(m_desktop->japaneseTokenizer.prepared() > 0, !reading.isEmpty());
    }

    void aReadingUnderWayDoesNotOutliveItsText()
    {
        QSignalSpy changed(m_session.get(), &TranslationViewModel::readingChanged);
        const std::function<void()> ways[] = {
            [&] { m_session->editSource(u"我"_s); },
            [&] { m_session->prepareManualInput(true, std::nullopt); },
            [&] { m_session->setSource(u" "_s, true, std::nullopt); },
            [&] { translate(u"hello"_s, u"你好"_s); },
        };
        for (const auto &leave : ways) {
            m_desktop->japaneseTokenizer.setHolds(true);
            const int calls = m_desktop->japaneseTokenizer.calls();
            translate(u"我是"_s, u"答え"_s);
            QTRY_COMPARE(m_desktop->japaneseTokenizer.calls(), calls + 1);
            leave();
            // The next reading has to wait for the one that was given up.
            m_desktop->japaneseTokenizer.setHolds(false);
            bool nextIsThere = false;
            const auto next = m_readings->read(u"次"_s, ReadingForm::Romaji,
                                               [&](const QString &) { nextIsThere = true; });
            QTRY_VERIFY(nextIsThere);
            QCOMPARE(changed.count(), 0);
        }
    }

    void aResultToPutBackIsCheckedInChinese_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("wanted");
        QTest::addColumn<bool>("hasInsertTarget");
        QTest::addColumn<QStringList>("pieces"); // of the check; none: it is not made
        QTest::addColumn<QString>("shown");
        const QStringList none;
        QTest::newRow("in a field")
            << u"报价"_s << true << true << QStringList{u"回"_s, u"答"_s} << u"回答"_s;
        QTest::newRow("kana at once")
            << u"报价"_s << true << true << QStringList{u"か"_s, u"答"_s} << u""_s;
        QTest::newRow("kana later")
            << u"报价"_s << true << true << QStringList{u"回"_s, u"か"_s, u"答"_s} << u""_s;
        QTest::newRow("only to read") << u"报价"_s << true << false << none << u""_s;
        QTest::newRow("switched off") << u"报价"_s << false << true << none << u""_s;
        QTest::newRow("no Japanese result") << u"hello"_s << true << true << none << u""_s;
    }

    void aResultToPutBackIsCheckedInChinese()
    {
        QFETCH(QString, source);
        QFETCH(bool, wanted);
        QFETCH(bool, hasInsertTarget);
        QFETCH(QStringList, pieces);
        QFETCH(QString, shown);
        m_settings->showBackTranslation.set(wanted);
        translate(source, u"答え"_s, hasInsertTarget);
        if (pieces.isEmpty()) {
            QTest::qWait(600); // longer than the rest before the request
            QCOMPARE(m_server->requests().size(), 1);
            return;
        }
        // The first run is over before the check was due, and saves it.
        translate(source, u"答え"_s, hasInsertTarget);
        QElapsedTimer rest;
        rest.start();
        // What has arrived stays when the rest does not come.
        m_server->enqueue(eventStream(pieces + QStringList{u"x"_s}, {.pause = 5ms})
                              .cutAfter(int(pieces.size()), step::Reset{}, 60ms));
        QSignalSpy closed(m_server.get(), &localcloud::Server::connectionClosed);
        QTRY_VERIFY(!closed.isEmpty());
        QVERIFY(rest.elapsed() >= 300);
        QCOMPARE(m_session->backTranslation(), shown);
        QCOMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(m_server->requests().size(), 3);
        const QJsonObject body = bodyOf(m_server->requests().last());
        QCOMPARE(body[u"text"].toString(), u"答え"_s);
        QCOMPARE(body[u"target"].toString(), u"chinese"_s);
        m_session->translateNow();
        QCOMPARE(m_session->backTranslation(), QString());
    }

    void aReuseIsCheckedAndCountsOnlyTheCheck()
    {
        m_settings->showBackTranslation.set(true);
        m_session->historyLookup = [](const QString &, Language) {
            return std::optional(u"答え"_s);
        };
        m_server->enqueue(eventStream(
            {u"回答"_s}, {.usage = localcloud::TokenCounts{3, 4}, .translationId = "check"}));
        m_session->setSource(u"报价"_s, true, std::nullopt);
        QVERIFY(m_session->fromHistory());
        QTRY_COMPARE(m_session->reading(), u"わたし は"_s);
        QTRY_COMPARE(m_session->lastTokens(), 7);
        QCOMPARE(m_session->backTranslation(), u"回答"_s);
        QCOMPARE(m_session->lastTid(), QString());
    }

    void otherPhrasingsComeOnRequest_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("offered");
        QTest::addColumn<localcloud::Answer>("answer");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("some") << u" 报价 "_s << true << phrasings(u"1. 甲\n2. 乙"_s)
                              << QStringList{u"甲"_s, u"乙"_s};
        QTest::newRow("an error") << u"报价"_s << true << localcloud::Answer::error(500, u"no"_s)
                                  << QStringList{};
        QTest::newRow("Japanese is the source")
            << u"私は"_s << false << localcloud::Answer() << QStringList{};
    }

    void otherPhrasingsComeOnRequest()
    {
        QFETCH(QString, source);
        QFETCH(bool, offered);
        QFETCH(localcloud::Answer, answer);
        m_session->loadVariants(); // there is nothing yet
        translate(source, u"答え"_s);
        QCOMPARE(m_session->canShowVariants(), offered);
        for (int i = 0; i < 2; ++i) { // the second time begins with an empty list
            m_server->enqueue(answer);
            m_session->loadVariants();
            QCOMPARE(m_session->loadingVariants(), offered);
            QCOMPARE(m_session->variants(), QStringList());
            QTRY_VERIFY(!m_session->loadingVariants());
            QTEST(m_session->variants(), "shown");
            QCOMPARE(phase(), Phase::Kind::Done);
        }
        if (offered)
            QCOMPARE(bodyOf(m_server->requests().last())[u"text"].toString(), source.trimmed());

        m_server->enqueue(phrasings(u"甲"_s).delayedBy(50ms));
        m_session->loadVariants();
        m_session->editSource(u"报"_s);
        QVERIFY(!m_session->loadingVariants());
        QTRY_COMPARE(m_server->openConnections(), offered ? 0 : 1); // given up
        QCOMPARE(m_session->variants(), QStringList());
    }

    void aChosenPhrasingIsTheResult_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<bool>("streams");
        QTest::addColumn<QString>("reading");
        QTest::newRow("with a reading") << u"hiragana"_s << false << u"わたし は"_s;
        QTest::newRow("without") << u"off"_s << false << u""_s;
        QTest::newRow("while text arrives") << u"off"_s << true << u""_s;
    }

    void aChosenPhrasingIsTheResult()
    {
        QFETCH(QString, style);
        QFETCH(bool, streams);
        QFETCH(QString, reading);
        m_settings->readingStyleRaw.set(style);
        m_settings->showBackTranslation.set(true);
        const auto answer = eventStream({u"答"_s, u"え"_s}, {.pause = 60ms});
        m_server->enqueue(streams ? answer.cutAfter(1, step::Silence{}) : answer);
        m_session->setSource(u"报价"_s, true, std::nullopt);
        QTRY_COMPARE(m_session->translatedText(), streams ? u"答"_s : u"答え"_s);
        if (!streams) {
            m_server->enqueue(eventStream({u"回"_s, u"x"_s}).cutAfter(1, step::Silence{}));
            QTRY_COMPARE(m_session->backTranslation(), u"回"_s);
        }
        m_server->enqueue(phrasings(u"甲\n乙"_s));
        m_session->loadVariants();
        QTRY_COMPARE(m_session->variants().size(), 2);
        QTRY_COMPARE(m_session->reading(), reading);

        m_session->useVariant(m_session->variants().last());
        QCOMPARE(m_session->translatedText(), u"乙"_s);
        QCOMPARE(m_session->variants(), QStringList());
        QCOMPARE(m_session->backTranslation(), QString());
        QCOMPARE(m_session->reading(), QString()); // until the new one is there
        QCOMPARE(phase(), Phase::Kind::Done);
        QTRY_COMPARE(m_session->reading(), reading);
        // What still came for the old text is given up, and nothing is asked anew.
        QTRY_COMPARE(m_server->openConnections(), 1);
        QTest::qWait(600); // longer than the rest before a check
        QCOMPARE(m_server->requests().size(), streams ? 2 : 3);
        QCOMPARE(m_session->translatedText(), u"乙"_s);
        QCOMPARE(m_recorded.size(), streams ? 0 : 1);
    }

private:
    static localcloud::Answer phrasings(const QString &lines)
    {
        const QJsonObject message{{u"role"_s, u"assistant"_s}, {u"content"_s, lines}};
        return localcloud::Answer::json(
            200, {{u"choices"_s, QJsonArray{QJsonObject{{u"message"_s, message}}}}});
    }
};

QTEST_GUILESS_MAIN(TestSideTasks)
#include "tst_side_tasks.moc"
