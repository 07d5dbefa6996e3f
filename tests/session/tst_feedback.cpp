#include "session_test.h"

#include "core/feedback_service.h"

#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using localcloud::eventStream;

// A report on the translation on show, up to the one who hands it in.
class TestFeedback : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aReportTellsAllThatIsKnown_data();
    void aReportTellsAllThatIsKnown();
    void aReportIsOfferedWhereItCanBeTaken();
    void thePhaseFollowsTheReport_data();
    void thePhaseFollowsTheReport();
    void aReportUnderWaySurvivesTheNextText();

private:
    // A report that the test answers.
    struct Sent
    {
        FeedbackReport report;
        std::function<void(bool)> done;
    };
    class Pending : public platform::Operation
    {
        void stop() override {}
    };

    std::vector<Sent> m_sent;
};

void TestFeedback::init()
{
    start();
    m_sent.clear();
    m_session->feedbackHandler = [this](const FeedbackReport &report,
                                        std::function<void(bool)> done) {
        m_sent.push_back({report, std::move(done)});
        return platform::Task(new Pending);
    };
}

void TestFeedback::aReportTellsAllThatIsKnown_data()
{
    QTest::addColumn<bool>("focus");
    QTest::addColumn<bool>("reused");
    QTest::newRow("everything") << true << false;
    QTest::newRow("no focus") << false << false;
    QTest::newRow("a reuse") << true << true;
}

void TestFeedback::aReportTellsAllThatIsKnown()
{
    QFETCH(bool, focus);
    QFETCH(bool, reused);
    platform::FocusDiag diag;
    diag.app = u"editor"_s;
    diag.scene = u"read"_s;
    if (reused)
        m_session->historyLookup = [](const QString &, Language) { return std::optional(u"x"_s); };
    m_server->enqueue(eventStream({u"x"_s}, {.translationId = "id-1"}));
    m_session->setSource(u" 报价\n"_s, true, focus ? std::optional(diag) : std::nullopt);
    QTRY_COMPARE(phase(), Phase::Kind::Done);
    m_session->submitFeedback(rawValue(FeedbackReason::CannotEdit), u""_s);
    QCOMPARE(m_sent.size(), 1u);
    const FeedbackReport &report = m_sent.front().report;
    QCOMPARE(report.source, u" 报价\n"_s);
    QCOMPARE(report.translation, u"x"_s);
    QCOMPARE(report.target, Language::Japanese);
    QCOMPARE(report.tid, reused ? QString() : u"id-1"_s);
    QCOMPARE(report.reason, u"cannotEdit"_s);
    QCOMPARE(platform::FocusDiag::fromJson(report.context.toUtf8()),
             focus ? std::optional(diag) : std::nullopt);
}

void TestFeedback::aReportIsOfferedWhereItCanBeTaken()
{
    QVERIFY(!m_session->canSubmitFeedback()); // there is nothing yet
    m_session->submitFeedback(u"tone"_s, u"x"_s);
    QVERIFY(m_sent.empty());
    translate(u"报价"_s, u"x"_s);
    QVERIFY(m_session->canSubmitFeedback());
    m_settings->useCustomBackend.set(true);
    QVERIFY(!m_session->canSubmitFeedback());
    m_settings->useCustomBackend.set(false);
    m_session->feedbackHandler = nullptr;
    QVERIFY(!m_session->canSubmitFeedback());
    m_session->submitFeedback(u"tone"_s, u"x"_s);
    QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Idle);
}

void TestFeedback::thePhaseFollowsTheReport_data()
{
    QTest::addColumn<bool>("taken");
    QTest::addColumn<FeedbackPhase>("end");
    QTest::addColumn<int>("way");
    QTest::newRow("taken, closed") << true << FeedbackPhase::Sent << 0;
    QTest::newRow("refused, another text") << false << FeedbackPhase::Failed << 1;
    QTest::newRow("refused, manual input") << false << FeedbackPhase::Failed << 2;
}

void TestFeedback::thePhaseFollowsTheReport()
{
    QFETCH(bool, taken);
    QFETCH(int, way);
    translate(u"报价"_s, u"x"_s);
    QSignalSpy changed(m_session.get(), &TranslationViewModel::feedbackPhaseChanged);
    for (int i = 1; i <= 2; ++i) { // a second report as the first
        m_session->submitFeedback(u"tone"_s, u"补充"_s);
        QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Sending);
        m_sent.back().done(taken);
        QTEST(m_session->feedbackPhase(), "end");
        QCOMPARE(changed.count(), 2 * i);
    }
    QCOMPARE(m_sent.back().report.comment, u"补充"_s);
    if (way == 0)
        m_session->closeFeedback();
    else if (way == 1)
        m_session->setSource(u"甲"_s, true, std::nullopt);
    else
        m_session->prepareManualInput(true, std::nullopt);
    QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Idle);
}

void TestFeedback::aReportUnderWaySurvivesTheNextText()
{
    translate(u"报价"_s, u"x"_s);
    m_session->submitFeedback(u"tone"_s, u""_s);
    translate(u"甲"_s, u"y"_s);
    m_session->submitFeedback(u"omission"_s, u""_s);
    QCOMPARE(m_sent.size(), 2u);
    m_sent.front().done(false);
    QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Failed); // as it comes
    m_sent.back().done(true);
    QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Sent);
}

QTEST_GUILESS_MAIN(TestFeedback)
#include "tst_feedback.moc"
