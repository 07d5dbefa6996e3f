#include "core/feedback_service.h"

#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using localcloud::Answer;
namespace step = localcloud::step;

class TestFeedbackService : public QObject
{
    Q_OBJECT

    linuxdesktop::QtHttpClient m_network;
    localcloud::Server m_server;

    std::optional<bool> submit(const FeedbackReport &report, const QString &path = {},
                               const QByteArray &token = "t-1")
    {
        QUrl base = m_server.url();
        base.setPath(path);
        std::optional<bool> taken;
        const platform::Task task =
            FeedbackService(m_network, base, token).submit(report, [&](bool answer) {
                taken = answer;
            });
        if (taken)
            return std::nullopt; // never before the event loop
        [[maybe_unused]] const bool ended =
            QTest::qWaitFor([&] { return taken.has_value(); }, 30'000);
        return taken;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void theReportGoesOutAsAgreed()
    {
        FeedbackReport report{u" 报价\n"_s, u"見積もり"_s, Language::TraditionalChinese,
                              QString(),    u"tone"_s,     QString(),
                              QString()};
        QJsonObject expected{{u"sourceText"_s, u" 报价\n"_s},
                             {u"translation"_s, u"見積もり"_s},
                             {u"target"_s, u"traditionalChinese"_s},
                             {u"reason"_s, u"tone"_s},
                             {u"comment"_s, u""_s}};
        m_server.enqueue(Answer::json(200, {}));
        QCOMPARE(submit(report), true);
        QCOMPARE(QJsonDocument::fromJson(m_server.requests().last().body).object(), expected);

        report.tid = u"id-1"_s;
        report.comment = u"补充"_s;
        report.context = u"{\"app\":\"x\"}"_s; // a text, not an object
        expected[u"tid"] = report.tid;
        expected[u"comment"] = report.comment;
        expected[u"context"] = report.context;
        m_server.enqueue(Answer::json(200, {}));
        QCOMPARE(submit(report, u"/api/"_s, " t-1\n"), true);
        const localcloud::Request request = m_server.requests().last();
        QCOMPARE(QJsonDocument::fromJson(request.body).object(), expected);
        QCOMPARE(request.method + ' ' + request.path, "POST /api/v1/feedback"_ba);
        QCOMPARE(request.header("Content-Type"), "application/json"_ba);
        QCOMPARE(request.header("Authorization"), "Bearer t-1"_ba);
    }

    void onlyAnAcceptedReportCountsAndNoneGoesOutTwice_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<bool>("taken");
        const auto row = [](const char *name, const Answer &answer, bool taken,
                            const QByteArray &token = "t-1") {
            QTest::newRow(name) << answer << token << taken;
        };
        row("200", Answer::json(200, {}), true);
        row("299", Answer::plain(299, "what is this", "text/plain"), true);
        row("200 without end", Answer::json(200, {}).cutAfter(0, step::Silence{}), true);
        row("401", Answer::error(401, u"sign in first"_s), false);
        row("500", Answer::html(500), false);
        row("another place", Answer::redirect(QUrl(u"/v1/other"_s)), false);
        row("a page instead", Answer::redirect(QUrl(u"/login"_s), 302), false);
        row("reset", Answer::reset(), false);
        row("closed", Answer::close(), false);
        row("nobody signed in", {}, false, {});
        row("a blank token", {}, false, " \n");
        row("a broken token", {}, false, "a\r\nX: y");
    }
    void onlyAnAcceptedReportCountsAndNoneGoesOutTwice()
    {
        QFETCH(Answer, answer);
        QFETCH(QByteArray, token);
        QFETCH(bool, taken);
        const auto expected = m_server.requests().size() + (token == "t-1" ? 1 : 0);
        m_server.dropAnswers();
        m_server.enqueue(answer);
        QCOMPARE(submit({}, {}, token), taken);
        QTest::qWait(50); // long enough for one more request to arrive on this machine
        QCOMPARE(m_server.requests().size(), expected);
    }

    void aServerThatSaysNothingIsGivenUpAfterFifteenSeconds()
    {
        m_server.dropAnswers();
        m_server.enqueue(Answer::silence());
        QElapsedTimer since;
        since.start();
        QCOMPARE(submit({}), false);
        // The toolkit's timers may be early by a twentieth.
        QVERIFY(since.elapsed() >= 14'000 && since.elapsed() < 20'000);
    }
};

QTEST_GUILESS_MAIN(TestFeedbackService)
#include "tst_feedback_service.moc"
