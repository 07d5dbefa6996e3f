#include "core/connection_test.h"
#include "core/endpoint_address.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::Answer;
using localcloud::eventStream;

namespace {

Answer models(const QStringList &names)
{
    QJsonArray data;
    for (const QString &name : names)
        data << QJsonObject{{u"id"_s, name}};
    return Answer::json(200, {{u"data"_s, data}});
}

} // namespace

class TestConnectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressesAreJudged_data()
    {
        QTest::addColumn<AddressProblem>("problem");
        QTest::newRow("") << AddressProblem::NoScheme;
        QTest::newRow("example.com") << AddressProblem::NoScheme;
        QTest::newRow("localhost:8080") << AddressProblem::NoScheme;
        QTest::newRow("ftp://example.com") << AddressProblem::NoScheme;
        QTest::newRow("http://") << AddressProblem::NoHost;
        QTest::newRow("https:///path") << AddressProblem::NoHost;
        QTest::newRow("http://[::1") << AddressProblem::NoHost;
        QTest::newRow("http://my host") << AddressProblem::NoHost;
        QTest::newRow("https://example.com/api/v1//") << AddressProblem::EndsInVersion;
        QTest::newRow("http://[::1]:8080/v1") << AddressProblem::EndsInVersion;
        QTest::newRow("HTTP://10.0.0.1:8000") << AddressProblem::None;
        QTest::newRow("https://例え.jp/api/v10") << AddressProblem::None;
    }

    void addressesAreJudged()
    {
        QTEST(addressProblem(QString::fromUtf8(QTest::currentDataTag())), "problem");
    }

    void oneLineTellsWhatWasFound_data()
    {
        QTest::addColumn<Answer>("completion");
        QTest::addColumn<Answer>("list");
        QTest::addColumn<QString>("line");
        const Answer ok = eventStream({u"OK"_s}, {.usage = localcloud::TokenCounts{9, 1}});
        const Answer none = Answer::error(404, u"no"_s);
        QTest::newRow("all is well") << ok << models({u"big"_s, u"small"_s})
                                     << u"连接正常（# 毫秒） · 模型可用 · 支持流式 · 报告用量"_s;
        QTest::newRow("no list, no usage") << eventStream({u"O"_s, u"K"_s}) << none
                                           << u"连接正常（# 毫秒） · 支持流式 · 不报告用量"_s;
        QTest::newRow("another model")
            << ok << models({u"big"_s})
            << u"连接正常（# 毫秒） · 模型不在服务的列表中 · 支持流式 · 报告用量"_s;
        QTest::newRow("a model that goes on and on")
            << eventStream(QStringList(1000, u"OK"_s), {.pause = 20ms}) << Answer::html(200)
            << u"连接正常（# 毫秒） · 支持流式 · 不报告用量"_s;
        QTest::newRow("an answer in one piece")
            << Answer::json(200, {{u"choices"_s, QJsonArray()}}) << none
            << u"服务可以连接，但没有以流式返回文字，无法用于翻译。"_s;
        QTest::newRow("wrong key")
            << Answer::error(401, u"key"_s) << none << u"服务拒绝了 API Key (HTTP 401)。"_s;
        QTest::newRow("unknown model")
            << none << models({u"big"_s})
            << u"服务没有 v1/chat/completions，或不认识该模型 (HTTP 404)。 "
               "模型不在服务的列表中"_s;
        QTest::newRow("out of order")
            << Answer::error(500, u"x"_s) << none << u"服务返回错误 (HTTP 500)。"_s;
    }

    void oneLineTellsWhatWasFound()
    {
        QFETCH(const Answer, completion);
        QFETCH(const Answer, list);
        localcloud::Server server;
        QVERIFY(server.listen());
        server.setHandler([&](const localcloud::Request &request) {
            return request.method == "GET" ? list : completion;
        });
        const QString line = reportOn(server.url()).summary();
        QTEST(QString(line).replace(QRegularExpression(u"[0-9]+ 毫秒"_s), u"# 毫秒"_s), "line");
    }

    void theRequestIsATranslationsOwn()
    {
        localcloud::Server server;
        QVERIFY(server.listen());
        server.setHandler([](const localcloud::Request &) { return Answer::html(200); });
        reportOn(server.url().resolved(QUrl(u"/api"_s)), "secret\n");
        QCOMPARE(server.requests().size(), 2);
        QStringList lines;
        for (const auto &request : server.requests()) {
            lines << QString::fromLatin1(request.method + ' ' + request.path);
            QCOMPARE(request.header("Authorization"), "Bearer secret"_ba);
            if (request.method != "POST")
                continue;
            const auto body = QJsonDocument::fromJson(request.body).object();
            QCOMPARE(body[u"model"], u"small"_s);
            QCOMPARE(body[u"stream"], true);
            QVERIFY(request.body.size() < 250);
        }
        lines.sort();
        QCOMPARE(lines, (QStringList{u"GET /api/v1/models"_s, u"POST /api/v1/chat/completions"_s}));
    }

    void nothingListensThere()
    {
        localcloud::Server server;
        const ConnectionReport report = reportOn(server.refusedUrl());
        QCOMPARE(report.summary(), u"无法连接翻译服务，请检查网络或服务地址。"_s);
        QVERIFY(!report.models);
        // A key that would end the header's line is not sent at all.
        QVERIFY(server.listen());
        QVERIFY(reportOn(server.url(), "a\r\nX: y").error);
        QVERIFY(server.requests().isEmpty());
    }

    void droppingItStopsBothRequests()
    {
        localcloud::Server server;
        QVERIFY(server.listen());
        server.setHandler([](const localcloud::Request &) {
            return eventStream(QStringList(100, u"x"_s), {.pause = 100ms});
        });
        platform::Task task = ConnectionTest(m_network).run(
            {.apiBaseURL = server.url(),
             .modelName = {},
             .apiToken = {},
             .cloud = false,
             .translateTemplate = {}},
            [](const ConnectionReport &) { QFAIL("it was dropped"); });
        QTRY_COMPARE(server.requests().size(), 2);
        task.cancel();
        QTRY_COMPARE(server.openConnections(), 0);
    }

private:
    linuxdesktop::QtHttpClient m_network;

    ConnectionReport reportOn(const QUrl &address, const QByteArray &key = "secret")
    {
        std::optional<ConnectionReport> found;
        const platform::Task task =
            ConnectionTest(m_network).run({.apiBaseURL = address,
                                           .modelName = u"small"_s,
                                           .requestTimeout = 5s,
                                           .apiToken = key,
                                           .cloud = false,
                                           .translateTemplate = {}},
                                          [&](const ConnectionReport &report) { found = report; });
        const bool ended = QTest::qWaitFor([&] { return found.has_value(); }, 10'000);
        return ended ? *found : ConnectionReport{.error = TranslationError::network(u"no end"_s)};
    }
};

QTEST_GUILESS_MAIN(TestConnectionTest)
#include "tst_connection_test.moc"
