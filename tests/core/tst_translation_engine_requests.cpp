// What the engine sends.

#include "engine_run.h"

#include "localcloud/event_stream.h"

#include <QJsonDocument>
#include <QTest>

using namespace nivora;
using namespace nivora::localcloud;
using namespace nivora::test;

class TestTranslationEngineRequests : public EngineTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void sendsTheToken_data()
    {
        QTest::addColumn<bool>("cloud");
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<QByteArray>("header");
        for (const bool cloud : {true, false}) {
            const char *form = cloud ? "cloud" : "own endpoint";
            QTest::addRow("%s", form) << cloud << "t-1"_ba
                                      << "Bearer t-1"_ba;
            QTest::addRow("%s, empty", form) << cloud << ""_ba << QByteArray();
            QTest::addRow("%s, blank", form) << cloud << " \n"_ba << QByteArray();
            QTest::addRow("%s, pasted with a line end", form) << cloud << "t-1\r\n"_ba
                                                              << "Bearer t-1"_ba;
        }
    }
    void sendsTheToken()
    {
        QFETCH(bool, cloud);
        QFETCH(QByteArray, token);
        QFETCH(QByteArray, header);
        m_server->enqueue(eventStream({u"a"_s}));
        TranslationConfig with = configFor(*m_server, cloud);
        with.apiToken = token;
        Run run;
        run.start(m_engine, with);
        QTRY_COMPARE(run.ends, 1);
        const Request request = m_server->requests().at(0);
        QCOMPARE(request.header("Authorization"), header);
        QCOMPARE(request.hasHeader("Authorization"), !header.isNull());
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.header("Accept"), "text/event-stream");
    }

    void neverSendsATokenWithControlCharacters_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::newRow("line feed") << "a\nX-Other: b"_ba;
        QTest::newRow("CRLF") << "a\r\n\r\nGET / HTTP/1.1"_ba;
        QTest::newRow("zero") << QByteArray("a\0b", 3);
        QTest::newRow("delete") << "a\x7F"
                                   "b"_ba;
    }
    void neverSendsATokenWithControlCharacters()
    {
        QFETCH(QByteArray, token);
        TranslationConfig with = configFor(*m_server);
        with.apiToken = token;
        Run run;
        run.start(m_engine, with);
        QCOMPARE(run.ends, 0); // nothing is delivered from within the call
        QTRY_COMPARE(run.ends, 1);
        QVERIFY(run.message.startsWith(networkMessage));
        QVERIFY(!run.message.contains(QString::fromLatin1(token)));
        QCOMPARE(m_server->acceptedConnections(), 0);
    }

    void appendsItsPathToTheBase_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<bool>("cloud");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("cloud") << u""_s << true << "/v1/translate"_ba;
        QTest::newRow("cloud, root") << u"/"_s << true << "/v1/translate"_ba;
        QTest::newRow("cloud, path") << u"/api"_s << true << "/api/v1/translate"_ba;
        QTest::newRow("cloud, path/") << u"/api/"_s << true << "/api/v1/translate"_ba;
        QTest::newRow("own") << u""_s << false << "/v1/chat/completions"_ba;
        QTest::newRow("own, /v1") << u"/v1"_s << false << "/v1/v1/chat/completions"_ba;
        QTest::newRow("own, blank")
            << u"/my models"_s << false << "/my%20models/v1/chat/completions"_ba;
    }
    void appendsItsPathToTheBase()
    {
        QFETCH(QString, base);
        QFETCH(bool, cloud);
        QFETCH(QByteArray, path);
        m_server->enqueue(eventStream({u"a"_s}));
        TranslationConfig below = configFor(*m_server, cloud);
        below.apiBaseURL.setPath(base);
        Run run;
        run.start(m_engine, below);
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(m_server->requests().at(0).path, path);
    }

    void sendsTheBody_data()
    {
        QTest::addColumn<bool>("cloud");
        QTest::addColumn<int>("target");
        QTest::addColumn<TranslationOptions>("options");
        QTest::addColumn<QByteArray>("body");
        const TranslationOptions rich{.glossary = {{QUuid::createUuid(), u"报价"_s, u"見積もり"_s},
                                                   {QUuid::createUuid(), u"合同"_s, u"契約"_s}},
                                      .style = u"商务敬语、ビジネス文体"_s,
                                      .background = u"Re: 10 %\n"_s};
        QTest::newRow("cloud, all options")
            << true << int(Language::Japanese) << rich
            << R"({"text":"请发一下报价","target":"japanese","mode":"translate","stream":true,)"
               R"("style":"商务敬语、ビジネス文体","background":"Re: 10 %\n",)"
               R"("glossary":[["报价","見積もり"]]})"_ba;
        QTest::newRow("cloud, no options")
            << true << int(Language::TraditionalChinese) << TranslationOptions{}
            << R"({"text":"请发一下报价","target":"traditionalChinese","mode":"translate",)"
               R"("stream":true})"_ba;
        QTest::newRow("cloud, romaji, no glossary")
            << true << int(Language::Romaji) << TranslationOptions{rich.glossary, {}, {}}
            << R"({"text":"请发一下报价","target":"romaji","mode":"translate","stream":true})"_ba;
        QTest::newRow("own endpoint")
            << false << int(Language::Japanese) << rich
            << R"({"model":"some-model","messages":[{"role":"user","content":)"
               R"("请将以下文本翻译为日语，只输出译文：\n\n请发一下报价"}],)"
               R"("temperature":0,"stream":true,"stream_options":{"include_usage":true}})"_ba;
        QTest::newRow("own endpoint, romaji")
            << false << int(Language::Romaji) << TranslationOptions{}
            << R"({"model":"some-model","messages":[{"role":"user","content":)"
               R"("请将以下文本翻译为中文，只输出译文：\n\n请发一下报价"}],)"
               R"("temperature":0,"stream":true,"stream_options":{"include_usage":true}})"_ba;
    }
    void sendsTheBody()
    {
        QFETCH(bool, cloud);
        QFETCH(int, target);
        QFETCH(TranslationOptions, options);
        QFETCH(QByteArray, body);
        m_server->enqueue(eventStream({u"a"_s}));
        Run run;
        run.task = m_engine.translate(u"请发一下报价"_s, Language(target), options,
                                      configFor(*m_server, cloud), run.callbacks());
        QTRY_COMPARE(run.ends, 1);
        const QByteArray sent = m_server->requests().at(0).body;
        QCOMPARE(QJsonDocument::fromJson(sent), QJsonDocument::fromJson(body));
        // Compact: the same objects without a blank between tokens.
        QCOMPARE(sent.size(), body.size());
    }
};

QTEST_GUILESS_MAIN(TestTranslationEngineRequests)
#include "tst_translation_engine_requests.moc"
