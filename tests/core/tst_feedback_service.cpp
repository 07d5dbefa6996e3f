#include "core/feedback_service.h"

#include "localcloud/server.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;
namespace step = localcloud::step;

class TestFeedbackService : public QObject
{
    Q_OBJECT

    QNetworkAccessManager m_network;
    localcloud::Server m_server;

    static FeedbackReport report()
    {
        return {u" 报价\n"_s, u"見積もり"_s, Language::TraditionalChinese, u"id-1"_s,
                u"tone"_s,    u"补充"_s,     u"{\"app\":\"x\"}"_s};
    }

    std::optional<bool> submit(const FeedbackReport &report, const QUrl &base,
                               const QByteArray &token = "t-1")
    {
        std::optional<bool> taken;
        const platform::Task task =
            FeedbackService(m_network, base, token).submit(report, [&](bool answer) {
                taken = answer;
            });
        if (taken)
            return std::nullopt; // never before the event loop
        [[maybe_unused]] const bool ended = QTest::qWaitFor([&] { return taken.has_value(); });
        return taken;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void theReportGoesOutAsAgreed_data()
    {
        QTest::addColumn<QString>("tid");
        QTest::addColumn<QString>("comment");
        QTest::addColumn<QString>("context");
        QTest::newRow("everything") << u"id-1"_s << u"补充"_s << u"{\"app\":\"x\"}"_s;
        QTest::newRow("the least") << QString() << QString() << QString();
    }
    void theReportGoesOutAsAgreed()
    {
        QFETCH(QString, tid);
        QFETCH(QString, comment);
        QFETCH(QString, context);
        FeedbackReport sent = report();
        sent.tid = tid;
        sent.comment = comment;
        sent.context = context;
        m_server.enqueue(Answer::json(200, {}));
        QUrl base = m_server.url();
        base.setPath(u"/api/"_s);
        QCOMPARE(submit(sent, base, " t-1\n"), true);

        const localcloud::Request request = m_server.requests().last();
        QCOMPARE(request.method, "POST"_ba);
        QCOMPARE(request.path, "/api/v1/feedback"_ba);
        QCOMPARE(request.header("Content-Type"), "application/json"_ba);
        QCOMPARE(request.header("Authorization"), "Bearer t-1"_ba);
        QJsonObject expected{{u"sourceText"_s, u" 报价\n"_s},
                             {u"translation"_s, u"見積もり"_s},
                             {u"target"_s, u"traditionalChinese"_s},
                             {u"reason"_s, u"tone"_s},
                             {u"comment"_s, comment.isEmpty() ? u""_s : comment}};
        if (!tid.isEmpty())
            expected[u"tid"] = tid;
        if (!context.isEmpty())
            expected[u"context"] = context; // a text, not an object
        QCOMPARE(QJsonDocument::fromJson(request.body).object(), expected);
    }

    void onlyAnAcceptedReportCounts_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<bool>("taken");
        QTest::newRow("200") << Answer::json(200, {}) << true;
        QTest::newRow("299") << Answer::plain(299, "what is this", "text/plain") << true;
        QTest::newRow("an answer without end")
            << Answer::json(200, {}).cutAfter(0, step::Silence{}) << true;
        QTest::newRow("401") << Answer::error(401, u"sign in first"_s) << false;
        QTest::newRow("500") << Answer::html(500) << false;
        QTest::newRow("another place") << Answer::redirect(QUrl(u"/v1/other"_s)) << false;
        QTest::newRow("a page instead") << Answer::redirect(QUrl(u"/login"_s), 302) << false;
        QTest::newRow("reset") << Answer::reset() << false;
        QTest::newRow("closed") << Answer::close() << false;
    }
    void onlyAnAcceptedReportCounts()
    {
        QFETCH(Answer, answer);
        QFETCH(bool, taken);
        const auto before = m_server.requests().size();
        m_server.enqueue(answer);
        QCOMPARE(submit(report(), m_server.url()), taken);
        QTest::qWait(50); // long enough for a second attempt to arrive on this machine
        QCOMPARE(m_server.requests().size(), before + 1);
    }

    void nothingIsSentWithoutAToken_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("blank") << "  \n"_ba;
        QTest::newRow("broken") << "a\r\nX: y"_ba;
    }
    void nothingIsSentWithoutAToken()
    {
        QFETCH(QByteArray, token);
        const auto before = m_server.acceptedConnections();
        const auto requests = m_server.requests().size();
        QCOMPARE(submit(report(), m_server.url(), token), false);
        QTest::qWait(50); // long enough for a request to arrive on this machine
        QCOMPARE(m_server.acceptedConnections(), before);
        QCOMPARE(m_server.requests().size(), requests);
    }

    void noServerIsAFailureAndADroppedReportSilent()
    {
        QCOMPARE(submit(report(), m_server.refusedUrl()), false);
        m_server.enqueue(Answer::silence());
        const auto before = m_server.requests().size();
        bool called = false;
        auto task = FeedbackService(m_network, m_server.url(), "t-1").submit(report(), [&](bool) {
            called = true;
        });
        QTRY_COMPARE(m_server.requests().size(), before + 1);
        task.cancel();
        QTRY_COMPARE(m_server.openConnections(), 0);
        QVERIFY(!called);
    }

    void aServerThatSaysNothingIsGivenUpAfterFifteenSeconds()
    {
        m_server.enqueue(Answer::silence());
        QElapsedTimer since;
        since.start();
        std::optional<bool> taken;
        const auto task =
            FeedbackService(m_network, m_server.url(), "t-1").submit(report(), [&](bool answer) {
                taken = answer;
            });
        QTRY_COMPARE_WITH_TIMEOUT(taken, false, 30'000);
        QVERIFY(since.elapsed() >= 14'500);
    }

    void everyReasonHasItsNames()
    {
        QStringList names;
        for (const FeedbackReason reason : allFeedbackReasons)
            names << rawValue(reason) + u' ' + label(reason);
        QCOMPARE(names, (QStringList{u"mistranslation 翻译错误"_s, u"omission 漏译"_s,
                                     u"number 数字错误"_s, u"tone 语气不对"_s,
                                     u"cannotEdit 无法替换/插入译文"_s, u"other 其他"_s}));
    }
};

QTEST_GUILESS_MAIN(TestFeedbackService)
#include "tst_feedback_service.moc"
