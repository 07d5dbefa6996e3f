#include "session_test.h"

#include "core/feedback_service.h"

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
    void init()
    {
        start();
        m_sent.clear();
        m_session->feedbackHandler = [this](const FeedbackReport &report,
                                            std::function<void(bool)> done) {
            m_sent.push_back({report, std::move(done)});
            return platform::Task(new Pending);
        };
    }

    void aReportTellsAllThatIsKnown_data()
    {
        QTest::addColumn<bool>("focus");
        QTest::addColumn<bool>("reused");
        QTest::newRow("everything") << true << false;
        QTest::newRow("no focus, a reuse") << false << true;
    }

    void aReportTellsAllThatIsKnown()
    {
        QFETCH(bool, focus);
        QFETCH(bool, reused);
        platform::FocusDiag diag;
        diag.app = u"editor"_s;
        const auto context = focus ? std::optional(diag) : std::nullopt;
        if (reused)
            m_session->historyLookup = [](const QString &, Language) {
                return std::optional(u"x"_s);
            };
        m_server->enqueue(eventStream({u"x"_s}, {.translationId = "id-1"}));
        m_session->setSource(u" 报价\n"_s, true, context);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
        m_session->submitFeedback(u"cannotEdit"_s, u"补充"_s);
        QCOMPARE(m_sent.size(), 1u);
        const FeedbackReport &report = m_sent.front().report;
        QCOMPARE(report.source, u" 报价\n"_s);
        QCOMPARE(report.translation, u"x"_s);
        QCOMPARE(report.target, Language::Japanese);
        QCOMPARE(report.tid, reused ? QString() : u"id-1"_s);
        QCOMPARE(report.reason, u"cannotEdit"_s);
        QCOMPARE(report.comment, u"补充"_s);
        QCOMPARE(platform::FocusDiag::fromJson(report.context.toUtf8()), context);
    }

    void aReportIsOfferedWhereItCanBeTaken()
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

    void thePhaseFollowsTheReports()
    {
        const std::function<void()> ways[] = {
            [&] { m_session->closeFeedback(); },
            [&] { m_session->setSource(u" "_s, true, std::nullopt); },
            [&] { m_session->prepareManualInput(true, std::nullopt); },
        };
        for (const auto &leave : ways) {
            translate(u"报价"_s, u"x"_s);
            m_session->submitFeedback(u"tone"_s, u""_s);
            QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Sending);
            m_sent.back().done(false);
            QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Failed);
            m_session->submitFeedback(u"tone"_s, u""_s); // once more
            QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Sending);
            leave();
            QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Idle);
            m_sent.back().done(true);
            QCOMPARE(m_session->feedbackPhase(), FeedbackPhase::Sent); // as it comes
        }
    }

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

QTEST_GUILESS_MAIN(TestFeedback)
#include "tst_feedback.moc"
