#include "session_test.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::eventStream;

// One run with a real engine against a real server, and what ends it early.
class TestTranslationRun : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void aTextFromOutsideRunsToItsEnd()
    {
        m_server->enqueue(
            eventStream({u"お見積もりを"_s, u"送ってください。"_s},
                        {.usage = localcloud::TokenCounts{12, 7}, .translationId = "id-1"}));
        QSignalSpy phases(m_session.get(), &TranslationViewModel::phaseChanged);
        platform::FocusDiag focus;
        focus.app = u"editor"_s;
        m_session->setSource(u"  请发一下报价\n"_s, true, focus);

        // All that is known at once is there at once, and nothing has called back.
        QCOMPARE(phase(), Phase::Kind::Loading);
        QVERIFY(m_session->isTranslating());
        QCOMPARE(m_session->mode(), PanelMode::Selection);
        QCOMPARE(m_session->sourceText(), u"  请发一下报价\n"_s);
        QCOMPARE(m_session->detectedSource(), Language::Chinese);
        QCOMPARE(m_session->effectiveTarget(), Language::Japanese);
        QCOMPARE(m_session->lastFocusContext()->app, u"editor"_s);

        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(phases.count(), 3); // loading, streaming, done
        QCOMPARE(m_session->translatedText(), u"お見積もりを送ってください。"_s);
        QCOMPARE(m_session->lastTokens(), 19);
        QCOMPARE(m_session->lastTid(), u"id-1"_s);
        QCOMPARE(bodyOf(m_server->requests().first())[u"text"].toString(), u"请发一下报价"_s);
        QCOMPARE(m_recorded,
                 QStringList{u"请发一下报价|お見積もりを送ってください。|chinese|japanese"_s});
    }

    void piecesAreAnnouncedOneByOne()
    {
        m_server->enqueue(eventStream({u"a"_s, u"b"_s, u"c"_s}));
        QSignalSpy appended(m_session.get(), &TranslationViewModel::translatedTextAppended);
        QSignalSpy replaced(m_session.get(), &TranslationViewModel::translatedTextReplaced);
        m_session->setSource(u"甲"_s, true, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(appended.count(), 3);
        QCOMPARE(replaced.count(), 0);
    }

    void blanksAreNotSent()
    {
        m_session->setSource(u" \n\u3000"_s, true, std::nullopt);
        QCOMPARE(phase(), Phase::Kind::Idle);
        QTest::qWait(50); // long enough for a request to arrive on this machine
        QVERIFY(m_server->requests().isEmpty());
    }

    void anErrorKeepsWhatHasArrived()
    {
        m_server->enqueue(
            eventStream({u"一"_s, u"二"_s, u"三"_s}).cutAfter(2, localcloud::step::Reset{}));
        m_session->setSource(u"one two three"_s, true, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Error);
        QCOMPARE(m_session->phase().message, TranslationError::cannotConnect().errorDescription());
        QCOMPARE(m_session->translatedText(), u"一二"_s);
        QVERIFY(m_recorded.isEmpty());

        // Trying again starts from nothing.
        m_server->enqueue(eventStream({u"一二三"_s}));
        m_session->translateNow();
        QCOMPARE(m_session->translatedText(), QString());
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(m_session->translatedText(), u"一二三"_s);
    }

    void aNewRunSilencesTheOld()
    {
        m_server->enqueue(
            eventStream({u"old"_s, u"old"_s}).cutAfter(1, localcloud::step::Silence{}));
        m_server->enqueue(eventStream({u"new"_s}));
        m_session->setSource(u"甲"_s, true, std::nullopt);
        QTRY_COMPARE(m_session->translatedText(), u"old"_s);
        QSignalSpy closed(m_server.get(), &localcloud::Server::connectionClosed);
        m_session->setSource(u"乙"_s, true, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(m_session->translatedText(), u"new"_s);
        QTRY_VERIFY(closed.contains(QVariantList{m_server->requests().first().connection}));
        QCOMPARE(m_recorded, QStringList{u"乙|new|chinese|japanese"_s});
    }

    void everyWayOutOfARunSilencesIt_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("manual input") << 0;
        QTest::newRow("reply") << 1;
        QTest::newRow("edit") << 2;
        QTest::newRow("blank source") << 3;
    }

    void everyWayOutOfARunSilencesIt()
    {
        QFETCH(int, way);
        m_server->enqueue(eventStream({u"old"_s}).cutAfter(1, localcloud::step::Reset{}, 60ms));
        m_session->setSource(u"甲"_s, true, std::nullopt);
        QTRY_COMPARE(m_session->translatedText(), u"old"_s);
        switch (way) {
        case 0:
            m_session->prepareManualInput(false, std::nullopt);
            break;
        case 1:
            m_session->prepareReply(u"x"_s, Language::English);
            break;
        case 2:
            m_session->editSource(u"乙"_s);
            break;
        default:
            m_session->setSource(u" "_s, true, std::nullopt);
        }
        QCOMPARE(phase(), Phase::Kind::Idle);
        QCOMPARE(m_session->translatedText(), QString());
        QTRY_COMPARE(m_server->openConnections(), 0);
        QCOMPARE(phase(), Phase::Kind::Idle);
        QVERIFY(m_recorded.isEmpty());
    }

    void usageAddsUpForOneResult()
    {
        std::vector<TokenUsage> recorded;
        m_session->usageRecorder = [&](const TokenUsage &usage) { recorded.push_back(usage); };
        QByteArrayList lines{"data: " + localcloud::usageEvent({1, 2}),
                             "data: " + localcloud::pieceEvent(u"x"_s),
                             "data: " + localcloud::usageEvent({3, 4}), "data: [DONE]"};
        m_server->enqueue(localcloud::lineStream(lines));
        m_session->setSource(u"甲"_s, true, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(recorded, (std::vector<TokenUsage>{{1, 2}, {3, 4}}));
        QCOMPARE(m_session->lastTokens(), 10);
    }

    void aChangeOfSettingsCountsFromTheNextRun()
    {
        m_server->setHandler([](const auto &) { return eventStream({u"x"_s}); });
        m_session->setSource(u"甲"_s, true, std::nullopt);
        m_settings->useCustomBackend.set(true);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(m_server->requests().last().path, "/v1/translate"_ba);
        m_session->translateNow();
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        QCOMPARE(m_server->requests().last().path, "/v1/chat/completions"_ba);
    }
};

QTEST_GUILESS_MAIN(TestTranslationRun)
#include "tst_translation_run.moc"
