// Everything that can go wrong between the engine and a server.

#include "engine_run.h"

#include "localcloud/event_stream.h"

#include <QElapsedTimer>
#include <QHostInfo>
#include <QTest>

using namespace nivora;
using namespace nivora::localcloud;
using namespace nivora::test;

namespace {
constexpr auto idleTimeout = 250ms;

} // namespace

class TestTranslationEngineFaults : public EngineTest
{
    Q_OBJECT

    // How long after the first request the second one came.
    std::chrono::milliseconds gap() const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            m_server->requests().at(1).arrival - m_server->requests().at(0).arrival);
    }

private Q_SLOTS:
    void init() { start(); }

    void failsAtOnceOnAnErrorStatus_data()
    {
        QTest::addColumn<Answer>("answer");
        for (const int status : {199, 300, 304, 400, 401, 403, 404, 407, 413, 429, 500, 502, 503})
            QTest::addRow("%d", status) << Answer::error(status, u"no"_s);
        QTest::newRow("401 with a challenge")
            << Answer::error(401, u"no"_s).withHeader("WWW-Authenticate", "Basic realm=\"x\"");
        QTest::newRow("500, a stream") << eventStream({u"never"_s}).withStatus(500);
        QTest::newRow("503, a page") << Answer::html(503);
        QTest::newRow("500, a body without end")
            << eventStream({u"a"_s}).withStatus(500).cutAfter(0, step::Silence{});
    }
    void failsAtOnceOnAnErrorStatus()
    {
        QFETCH(Answer, answer);
        m_server->enqueue(answer);
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.message, httpMessage(answer.status));
        QVERIFY(run.elapsed < retryPause);
        QVERIFY(run.pieces.isEmpty());
        QCOMPARE(m_server->requests().size(), 1);
    }

    void meetsNetworkFaults_data()
    {
        QTest::addColumn<QList<Answer>>("answers");
        QTest::addColumn<int>("pieces");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("requests");
        const auto row = [](const char *name, const QList<Answer> &answers, int pieces,
                            const QString &message, int requests) {
            QTest::newRow(name) << answers << pieces << message << requests;
        };
        const Answer good = eventStream(QStringList(5, u"a"_s));
        const Answer sized = good.withFraming(Answer::Framing::Length);

        // Before an answer: one more attempt.
        row("time-out, then success", {Answer::silence(), good}, 5, {}, 2);
        row("reset, then success", {Answer::reset(), good}, 5, {}, 2);
        row("end, then success", {Answer::close(), good}, 5, {}, 2);
        row("time-out, then a status", {Answer::silence(), Answer::error(500, u"x"_s)}, 0,
            httpMessage(500), 2);
        row("time-out, then reset", {Answer::silence(), Answer::reset(), good}, 0, connectMessage,
            2);
        row("two time-outs", {Answer::silence(), Answer::silence(), good}, 0, timeoutMessage, 2);
        row("two resets", {Answer::reset(), Answer::reset(), good}, 0, connectMessage, 2);
        row("two ends", {Answer::close(), Answer::close(), good}, 0, connectMessage, 2);
        // From the status line on: none.
        row("silence after the headers", {good.cutAfter(0, step::Silence{}), good}, 0,
            timeoutMessage, 1);
        row("reset after the headers", {good.cutAfter(0, step::Reset{}), good}, 0, connectMessage,
            1);
        row("silence after three pieces", {good.cutAfter(3, step::Silence{}), good}, 3,
            timeoutMessage, 1);
        row("reset after three pieces", {good.cutAfter(3, step::Reset{}), good}, 3, connectMessage,
            1);
        row("end after three pieces", {good.cutAfter(3, step::Close{}), good}, 3, connectMessage,
            1);
        row("end before the promised length", {sized.cutAfter(3, step::Close{}), good}, 3,
            connectMessage, 1);
        // The time-out counts silence, not the whole.
        row("slow, but never silent", {eventStream(QStringList(5, u"a"_s), {.pause = 100ms})}, 5,
            {}, 1);
        row("slow to begin", {good.delayedBy(idleTimeout * 3 / 5)}, 5, {}, 1);
    }
    void meetsNetworkFaults()
    {
        QFETCH(QList<Answer>, answers);
        QFETCH(int, pieces);
        QFETCH(QString, message);
        QFETCH(int, requests);
        for (const Answer &each : std::as_const(answers))
            m_server->enqueue(each);
        TranslationConfig impatient = configFor(*m_server);
        impatient.requestTimeout = idleTimeout;
        Run run;
        run.start(m_engine, impatient);
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.message, message);
        QCOMPARE(run.pieces, QStringList(pieces, u"a"_s));
        QCOMPARE(m_server->requests().size(), requests);
        if (requests == 2) {
            QVERIFY(gap() >= retryPause);
            QVERIFY(gap() < retryPause + idleTimeout + 300ms);
            QCOMPARE(m_server->requests().at(1).body, m_server->requests().at(0).body);
        }
        if (message == timeoutMessage)
            QVERIFY(run.elapsed >= idleTimeout * 9 / 10); // Qt may be 5 % early
    }

    void meetsAddressesWhereNobodyAnswers_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<bool>("retries");
        QTest::addColumn<QString>("message");
        QTest::newRow("no such host")
            << QUrl(u"http://no-such-host.invalid"_s) << false << connectMessage;
        QTest::newRow("refused") << QUrl() << true << connectMessage;
        QTest::newRow("no scheme") << QUrl(u"//127.0.0.1:9/api"_s) << false << networkMessage;
        QTest::newRow("unknown scheme") << QUrl(u"gopher://127.0.0.1"_s) << false << networkMessage;
        QTest::newRow("no address at all") << QUrl(u"x"_s) << false << networkMessage;
    }
    void meetsAddressesWhereNobodyAnswers()
    {
        QFETCH(QUrl, url);
        QFETCH(bool, retries);
        QFETCH(QString, message);
        TranslationConfig wrong = configFor(*m_server);
        wrong.apiBaseURL = retries ? m_server->refusedUrl() : url;
        // What this machine's resolver takes by itself is not the engine's.
        QElapsedTimer clock;
        clock.start();
        if (!retries)
            QHostInfo::fromName(url.host());
        const std::chrono::milliseconds lookUp(clock.elapsed());
        Run run;
        run.start(m_engine, wrong);
        QCOMPARE(run.ends, 0);
        QTRY_COMPARE_WITH_TIMEOUT(run.ends, 1, 30'000);
        QVERIFY2(run.message.startsWith(message), qPrintable(run.message));
        QCOMPARE(run.elapsed >= lookUp + retryPause, retries);
    }

    // --- redirects ---------------------------------------------------------

    void neverFollowsARedirectToAnotherOrigin_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<std::function<void(QUrl &)>>("change");
        const auto rows = [](const char *name, const std::function<void(QUrl &)> &change) {
            for (const int status : {301, 302, 303, 307, 308})
                QTest::addRow("%d, other %s", status, name) << status << change;
        };
        rows("port", {});
        rows("host name", [](QUrl &url) { url.setHost(u"localhost"_s); });
        rows("scheme", [](QUrl &url) { url.setScheme(u"https"_s); });
    }
    void neverFollowsARedirectToAnotherOrigin()
    {
        QFETCH(int, status);
        QFETCH(const std::function<void(QUrl &)>, change);
        Server other;
        QVERIFY(other.listen());
        QUrl target = change ? m_server->url() : other.url();
        target.setPath(u"/v1/translate"_s);
        if (change)
            change(target);
        m_server->enqueue(Answer::redirect(target, status));
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.message, httpMessage(status));
        QCOMPARE(m_server->requests().size(), 1);
        QCOMPARE(other.acceptedConnections(), 0);
    }

    void followsARedirectWithinTheOrigin()
    {
        QUrl target = m_server->url();
        target.setPath(u"/v2/translate"_s);
        m_server->enqueue(Answer::redirect(target));
        m_server->enqueue(eventStream({u"a"_s, u"b"_s}, {.translationId = "id"}));
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.message, QString());
        QCOMPARE(run.pieces, QStringList({u"a"_s, u"b"_s}));
        QCOMPARE(run.ids, QStringList(u"id"_s));
        QCOMPARE(m_server->requests().size(), 2);
        const Request second = m_server->requests().at(1);
        QCOMPARE(second.method, "POST");
        QCOMPARE(second.path, "/v2/translate");
        QCOMPARE(second.body, m_server->requests().at(0).body);
        QCOMPARE(second.header("Authorization"), "Bearer secret");
    }

    void endsARedirectLoop()
    {
        m_server->setHandler([this](const Request &) { return Answer::redirect(m_server->url()); });
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.message, httpMessage(307));
    }
};

QTEST_GUILESS_MAIN(TestTranslationEngineFaults)
#include "tst_translation_engine_faults.moc"
