#include "core/billing_service.h"

#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using localcloud::Answer;

namespace {

Answer json(const QByteArray &body)
{
    return Answer::plain(200, body, "application/json");
}

} // namespace

class TestBillingService : public QObject
{
    Q_OBJECT

    linuxdesktop::QtHttpClient m_network;
    localcloud::Server m_server;
    using Ask = platform::Task (BillingService::*)(const platform::SecretText &,
                                                   BillingService::OnPage) const;

    template<typename Value>
    AuthResult<Value>
    ask(platform::Task (BillingService::*request)(const platform::SecretText &,
                                                  std::function<void(AuthResult<Value>)>) const,
        const QString &token = u"t-1"_s)
    {
        std::optional<AuthResult<Value>> outcome;
        const platform::Task task = (BillingService({m_network, m_server.url()}).*request)(
            token, [&](const AuthResult<Value> &result) { outcome = result; });
        [[maybe_unused]] const bool ended =
            QTest::qWaitFor([&] { return outcome.has_value(); }, 10'000);
        return outcome.value_or(AuthError::network(u"no outcome"_s));
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }
    void init() { m_server.dropAnswers(); }

    void theRequestsGoOutAsAgreed()
    {
        m_server.enqueue(json(R"({"plan":"a","status":"b","used":1,"quota":2})"));
        QVERIFY(std::holds_alternative<BillingStatus>(ask(&BillingService::status, u" t-1\n"_s)));
        QCOMPARE(m_server.requests().last().method + m_server.requests().last().path,
                 "GET/billing/status"_ba);
        const std::pair<Ask, QByteArray> pages[] = {
            {&BillingService::checkoutURL, "POST/billing/checkout"},
            {&BillingService::portalURL, "POST/billing/portal"}};
        for (const auto &[request, line] : pages) {
            m_server.enqueue(Answer::json(200, {{u"url"_s, u"https://pay.x/s?a=%2Fb"_s}}));
            QCOMPARE(std::get<QUrl>(ask(request)), QUrl(u"https://pay.x/s?a=%2Fb"_s));
            QCOMPARE(m_server.requests().last().method + m_server.requests().last().path, line);
        }
        for (const localcloud::Request &request : m_server.requests()) {
            QCOMPARE(request.header("Authorization"), "Bearer t-1"_ba);
            QVERIFY(request.body.isEmpty() && !request.hasHeader("Content-Type"));
        }
    }

    void statusTakesWholeNumbersOnly_data()
    {
        QTest::addColumn<QByteArray>("numbers");
        QTest::addColumn<std::optional<BillingStatus>>("status");
        const auto row = [](const char *name, const QByteArray &numbers,
                            std::optional<BillingStatus> status = {}) {
            QTest::newRow(name) << numbers << status;
        };
        const BillingStatus plain{u"pro"_s, u"active"_s, 1200, 10'000, {}};
        BillingStatus ending = plain;
        ending.periodEnd = 1799999999000;
        row("whole", R"("used":1200,"quota":10000,"periodEnd":1799999999000)", ending);
        row("written with a fraction", R"("used":1200.0,"quota":1e4,"periodEnd":null)", plain);
        row("without an end", R"("used":1200,"quota":10000)", plain);
        row("beyond every quota", R"("used":-1,"quota":0)",
            BillingStatus{u"pro"_s, u"active"_s, -1, 0, {}});
        row("no quota", R"("used":1200)");
        row("half a character", R"("used":1200.5,"quota":10000)");
        row("a text", R"("used":"1200","quota":10000)");
        row("too large", R"("used":1e30,"quota":10000)");
        row("an end that is a text", R"("used":1,"quota":2,"periodEnd":"soon")");
    }
    void statusTakesWholeNumbersOnly()
    {
        QFETCH(const QByteArray, numbers);
        QFETCH(const std::optional<BillingStatus>, status);
        m_server.enqueue(json(R"({"plan":"pro","status":"active",)" + numbers + '}'));
        const auto result = ask(&BillingService::status);
        if (status)
            QCOMPARE(std::get<BillingStatus>(result), *status);
        else
            QCOMPARE(std::get<AuthError>(result), AuthError::invalidResponse());
    }

    void onlyAPageOfTheWebIsOne_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::newRow("no object") << Answer::html(200);
        QTest::newRow("no address") << json("{}");
        QTest::newRow("a number") << json(R"({"url":1})");
        for (const char *url : {"", "/pay", "file:///etc/passwd", "nivora:?token=x",
                                "javascript:alert(1)", "https://", "http://[x"})
            QTest::newRow(url) << Answer::json(200, {{u"url"_s, QString::fromLatin1(url)}});
    }
    void onlyAPageOfTheWebIsOne()
    {
        QFETCH(const Answer, answer);
        m_server.enqueue(answer);
        QCOMPARE(std::get<AuthError>(ask(&BillingService::checkoutURL)),
                 AuthError::invalidResponse());
    }

    void theTokenGoesToNobodyElse()
    {
        localcloud::Server other;
        QVERIFY(other.listen());
        for (const int code : {301, 302, 303, 307, 308}) {
            m_server.enqueue(Answer::redirect(other.url(), code));
            QCOMPARE(std::get<AuthError>(ask(&BillingService::status)), AuthError::http(code));
            m_server.enqueue(Answer::redirect(other.url(), code));
            QCOMPARE(std::get<AuthError>(ask(&BillingService::portalURL)), AuthError::http(code));
        }
        QTest::qWait(30); // long enough for a request to arrive on this machine
        QCOMPARE(other.acceptedConnections(), 0);
    }

    void aTokenThatNoHeaderCanHoldIsNotSent()
    {
        const auto before = m_server.requests().size();
        for (const QString &token : {u""_s, u"a\r\nX: y"_s, u"tö"_s, QString(100'000, u'x')})
            QCOMPARE(std::get<AuthError>(ask(&BillingService::status, token)),
                     AuthError::invalidResponse());
        QCOMPARE(m_server.requests().size(), before);
    }

    void aPurchaseIsAskedForOnce()
    {
        const auto before = m_server.requests().size();
        m_server.enqueue(Answer::close());
        QCOMPARE(std::get<AuthError>(ask(&BillingService::checkoutURL)).kind(),
                 AuthError::Kind::Network);
        QTest::qWait(30); // long enough for one more request to arrive on this machine
        QCOMPARE(m_server.requests().size(), before + 1);
    }
};

QTEST_GUILESS_MAIN(TestBillingService)
#include "tst_billing_service.moc"
