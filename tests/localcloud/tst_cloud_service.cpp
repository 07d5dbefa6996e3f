#include "localcloud/cloud_service.h"
#include "localcloud/event_stream.h"
#include "localcloud/router.h"
#include "localcloud/server.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora::localcloud;
using namespace std::chrono_literals;

namespace {
// A server with the whole service behind it.
struct Cloud
{
    explicit Cloud(std::unique_ptr<Upstream> upstream = {})
        : service({.pieceDelay = 1ms, .upstream = std::move(upstream)})
    {
        service.addRoutes(router);
        server.setHandler([this](const Request &request) { return router.handle(request); });
        server.listen();
    }

    CloudService service;
    Router router;
    Server server;
};

struct Response
{
    int status = 0;
    QByteArray body;
    QByteArray translationId;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;

    QString content() const
    {
        const QJsonArray choices = QJsonDocument::fromJson(body)[u"choices"_s].toArray();
        return choices.at(0)[u"message"_s][u"content"_s].toString();
    }
    // The pieces of an event stream.
    QStringList pieces() const
    {
        QStringList all;
        for (const QByteArray &line : body.split('\n')) {
            if (!line.startsWith("data: {"))
                continue;
            const QJsonDocument event = QJsonDocument::fromJson(line.sliced(6));
            const QJsonValue content = event[u"choices"_s][0][u"delta"_s][u"content"_s];
            if (content.isString())
                all.append(content.toString());
        }
        return all;
    }
};

QByteArray bytesOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject promptBody(const QString &prompt)
{
    return {
        {u"model"_s, u"m"_s},
        {u"messages"_s, QJsonArray{QJsonObject{{u"role"_s, u"user"_s}, {u"content"_s, prompt}}}}};
}

} // namespace

class TestCloudService : public QObject
{
    Q_OBJECT

    QNetworkAccessManager m_network;
    Cloud m_cloud;

    Response ask(const Server &server, const QByteArray &method, const QString &path,
                 const QByteArray &body = {}, const QByteArray &authorization = "Bearer t")
    {
        QUrl url = server.url();
        url.setPath(path);
        QNetworkRequest request(url);
        request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
        if (!authorization.isEmpty())
            request.setRawHeader("Authorization", authorization);
        const std::unique_ptr<QNetworkReply> reply(
            m_network.sendCustomRequest(request, method, body));
        QSignalSpy finished(reply.get(), &QNetworkReply::finished);
        if (!finished.wait())
            return {};
        return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                reply->readAll(), reply->rawHeader("X-Translation-Id"), reply->error()};
    }

private Q_SLOTS:
    void looksUpWhateverTheSpelling_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("target");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QString &text, Tongue target,
                            const QString &expected) {
            QTest::newRow(name) << text << int(target) << expected;
        };
        row("zh-ja", u"请发一下报价"_s, Tongue::Japanese, u"見積もりを送ってください。"_s);
        row("zh-en", u"今天天气很好。"_s, Tongue::English, u"The weather is nice today."_s);
        row("en-zh, case", u"  thank you for YOUR help!\n"_s, Tongue::Chinese, u"谢谢你的帮助。"_s);
        row("en, curly", u"You’re welcome"_s, Tongue::Japanese, u"どういたしまして。"_s);
        row("en, full width", u"Ｈｅｌｌｏ！"_s, Tongue::Korean, u"안녕하세요"_s);
        row("ja-ko", u"こんにちは"_s, Tongue::Korean, u"안녕하세요"_s);
        row("ko-hant", u"감사합니다!"_s, Tongue::TraditionalChinese, u"謝謝。"_s);
        row("ja-yue", u"これはいくらですか？"_s, Tongue::Cantonese, u"呢個幾多錢？"_s);
        row("ja-romaji", u"わかりました"_s, Tongue::Romaji, u"Wakarimashita."_s);
        row("familiar ja", u"ちょっと待ってね"_s, Tongue::English, u"Please wait a moment."_s);
    }
    void looksUpWhateverTheSpelling()
    {
        QFETCH(QString, text);
        QFETCH(int, target);
        QFETCH(QString, expected);
        QCOMPARE(PhraseBook().lookUp(text, Tongue(target)), expected);
    }

    void readsThePromptOfTheOtherForm_data()
    {
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QString>("expected");
        QTest::newRow("japanese") << u"请将以下文本翻译为日语，只输出译文：\n\nHello"_s
                                  << u"こんにちは"_s;
        QTest::newRow("traditional, not chinese")
            << u"请将以下文本翻译为繁体中文：\n\nThank you."_s << u"謝謝。"_s;
        QTest::newRow("names a language in the text too")
            << u"翻译为英语\n\n我正在学日语。"_s << u"I am learning Japanese."_s;
        QTest::newRow("not found")
            << u"翻译为英语\n\n翻译为中文"_s << PhraseBook::notFound(Tongue::English);
        QTest::newRow("variants")
            << u"请将以下文本翻译为日语，给出2种不同语气的说法，每行一种，只输出结果：\n\n谢谢。"_s
            << u"ありがとうございます。\nありがとう。"_s;
        QTest::newRow("no language") << u"Translate\n\nHello"_s << u"（没有写明译成哪种语言）"_s;
    }
    void readsThePromptOfTheOtherForm()
    {
        QFETCH(QString, prompt);
        QFETCH(QString, expected);
        QJsonObject body = promptBody(prompt);
        QCOMPARE(
            ask(m_cloud.server, "POST", u"/v1/chat/completions"_s, bytesOf(body), {}).content(),
            expected);
        body.insert(u"stream"_s, true);
        const Response streamed =
            ask(m_cloud.server, "POST", u"/v1/chat/completions"_s, bytesOf(body), {});
        QCOMPARE(streamed.pieces().join(QString()), expected);
        QVERIFY(!streamed.body.contains("usage"));
    }

    void tellsGoodRequestsFromBad_data()
    {
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("authorization");
        QTest::addColumn<int>("status");
        const auto row = [](const char *name, const QByteArray &method, const QString &path,
                            const QByteArray &body, int status,
                            const QByteArray &authorization = "Bearer t") {
            QTest::newRow(name) << method << path << body << authorization << status;
        };
        const QString cloud = u"/v1/translate"_s;
        const QString chat = u"/v1/chat/completions"_s;
        const QByteArray good = R"({"text":"Hello","target":"chinese"})";
        row("no token", "POST", cloud, good, 401, {});
        row("empty token", "POST", cloud, good, 401, "Bearer ");
        row("basic", "POST", cloud, good, 401, "Basic eDp5");
        row("no JSON", "POST", cloud, R"({"text":)", 400);
        row("array", "POST", cloud, "[1]", 400);
        row("text is a number", "POST", cloud, R"({"text":1,"target":"chinese"})", 400);
        row("unknown target", "POST", cloud, R"({"text":"x","target":"latin"})", 400);
        row("unknown mode", "POST", cloud, R"({"text":"x","target":"chinese","mode":"x"})", 400);
        row("stream is a string", "POST", cloud,
            R"({"text":"x","target":"chinese","stream":"yes"})", 400);
        row("glossary of one", "POST", cloud,
            R"({"text":"x","target":"chinese","glossary":[["a"]]})", 400);
        const QString feedback = u"/v1/feedback"_s;
        const auto report = [](const QString &key = {}, const QJsonValue &value = {}) {
            QJsonObject body{{u"sourceText"_s, u" x"_s},
                             {u"translation"_s, u"y"_s},
                             {u"target"_s, u"korean"_s},
                             {u"reason"_s, u"tone"_s},
                             {u"comment"_s, u""_s}};
            if (!key.isEmpty())
                body[key] = value;
            return bytesOf(body);
        };
        row("feedback", "POST", feedback, report(), 200);
        row("feedback of nobody", "POST", feedback, report(), 401, {});
        row("feedback for no reason", "POST", feedback, report(u"reason"_s, u"mood"_s), 400);
        row("feedback from nowhere", "POST", feedback, report(u"context"_s, u"here"_s), 400);
        row("no messages", "POST", chat, "{}", 400);
        row("message is a number", "POST", chat, R"({"messages":[{"role":"user","content":1}]})",
            400);
        row("unknown path", "POST", u"/v1/nothing"_s, good, 404);
        row("wrong method", "GET", cloud, {}, 405);
        row("body too large", "POST", cloud, QByteArray(9'000'000, ' '), 413);
    }
    void tellsGoodRequestsFromBad()
    {
        QFETCH(QByteArray, method);
        QFETCH(QString, path);
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, authorization);
        QFETCH(int, status);
        QCOMPARE(ask(m_cloud.server, method, path, body, authorization).status, status);
    }

    void forwardsToAnUpstreamServer()
    {
        Server upstream;
        QVERIFY(upstream.listen());
        upstream.enqueue(eventStream({u"一"_s, u"二"_s}, {.pause = 5ms}));
        QUrl base = upstream.url();
        base.setPath(u"/api/v1/"_s);
        const Cloud cloud(std::make_unique<Upstream>(base, u"big"_s, "key"));
        const Response response = ask(cloud.server, "POST", u"/v1/translate"_s,
                                      R"({"text":"a\nb","target":"cantonese","stream":true,
                                          "style":"S","glossary":[["x","y"]]})",
                                      "Bearer session");
        QCOMPARE(response.pieces(), QStringList({u"一"_s, u"二"_s}));
        QVERIFY(!response.translationId.isEmpty());

        const Request sent = upstream.requests().at(0);
        QCOMPARE(sent.path, "/api/v1/chat/completions");
        QCOMPARE(sent.header("Authorization"), "Bearer key");
        const QJsonDocument body = QJsonDocument::fromJson(sent.body);
        QCOMPARE(body[u"model"_s], QJsonValue(u"big"_s));
        QCOMPARE(body[u"stream"_s], QJsonValue(true));
        const QString prompt = body[u"messages"_s][0][u"content"_s].toString();
        QVERIFY(prompt.contains(u"翻译为粤语"_s));
        QVERIFY(prompt.contains(u'S') && prompt.contains(u"“x”译作“y”"_s));
        QVERIFY(prompt.endsWith(u"\n\na\nb"_s));
    }
};

QTEST_GUILESS_MAIN(TestCloudService)
#include "tst_cloud_service.moc"
