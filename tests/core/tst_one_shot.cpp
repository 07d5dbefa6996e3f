// Requests that give their whole answer at once.

#include "engine_run.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace nivora;
using namespace nivora::localcloud;
using namespace nivora::test;

namespace {
constexpr auto idleTimeout = 250ms;
const auto invalidMessage = networkMessage + u"无效响应"_s;

Answer completion(const QByteArray &content)
{
    return Answer::plain(200, R"({"choices":[{"message":{"content":)" + content + "}}]}",
                         "application/json");
}

// One request and all that came of it.
struct OneShot
{
    auto onText()
    {
        return [this](const QString &answer, const std::optional<TranslationError> &error) {
            ++ends;
            text = answer;
            message = error ? error->errorDescription() : QString();
        };
    }

    QString text;
    QString message; // of the error; empty without one
    int ends = 0;
    platform::Task task; // gone first, so that nothing calls into the rest
};

} // namespace

class TestOneShot : public EngineTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void sendsTheBody_data()
    {
        QTest::addColumn<bool>("cloud");
        QTest::addColumn<bool>("variants");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("cloud, variants")
            << true << true << "/v1/translate"_ba
            << R"({"text":"お願いします","target":"japanese","mode":"variants",)"
               R"("variantCount":4,"stream":false})"_ba;
        QTest::newRow("own endpoint, variants")
            << false << true << "/v1/chat/completions"_ba
            << R"({"model":"some-model","messages":[{"role":"user","content":)"
               R"("请将以下文本翻译为日语，给出4种不同语气的说法，每行一种，只输出结果：\n\nお願いします"}],)"
               R"("temperature":0.7,"stream":false})"_ba;
        QTest::newRow("cloud, translation")
            << true << false << "/v1/translate"_ba
            << R"({"text":"お願いします","target":"japanese","mode":"translate","stream":false})"_ba;
        QTest::newRow("own endpoint, translation")
            << false << false << "/v1/chat/completions"_ba
            << R"({"model":"some-model","messages":[{"role":"user","content":)"
               R"("请将以下文本翻译为日语，只输出译文：\n\nお願いします"}],)"
               R"("temperature":0,"stream":false})"_ba;
    }
    void sendsTheBody()
    {
        QFETCH(bool, cloud);
        QFETCH(bool, variants);
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, body);
        m_server->enqueue(completion(R"("a")"));
        const TranslationConfig config = configFor(*m_server, cloud);
        OneShot run;
        const auto onVariants = [&](const QStringList &, const auto &) { ++run.ends; };
        run.task = variants ? m_engine.variants(u"お願いします"_s, Language::Japanese, 4, config,
                                                onVariants)
                            : m_engine.translateOnce(u"お願いします"_s, Language::Japanese, config,
                                                     run.onText());
        QTRY_COMPARE(run.ends, 1);
        const Request request = m_server->requests().at(0);
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.path, path);
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.header("Authorization"), "Bearer secret");
        QVERIFY(request.header("Accept") != "text/event-stream");
        QCOMPARE(QJsonDocument::fromJson(request.body), QJsonDocument::fromJson(body));
        QCOMPARE(request.body.size(), body.size());
    }

    void readsTheAnswer_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const Answer &answer, const QString &text,
                            const QString &message = {}) {
            QTest::newRow(name) << answer << text << message;
        };
        const auto body = [](const QByteArray &json) {
            return Answer::plain(200, json, "application/json");
        };
        row("text", completion(R"("你好")"), u"你好"_s);
        row("white space around it", completion(R"(" \n\u3000a\n b\n\t")"), u"a\n b"_s);
        row("in packets", completion(R"("你好，世界")").inPackets(1, 0ms), u"你好，世界"_s);
        row("a number", completion("42"), u"42"_s);
        row("null", completion("null"), {});
        row("an object", completion("{}"), {});
        row("no choices", body(R"({"choices":[]})"), {});
        row("the first choice",
            body(R"({"choices":[{"message":{"content":"a"}},{"message":{"content":"b"}}]})"),
            u"a"_s);
        row("a bad byte", completion("\"a\xFF\""), u"a\uFFFD"_s);
        row("status 201", completion(R"("a")").withStatus(201), u"a"_s);

        row("a choice without message", body(R"({"choices":[{}]})"), {}, invalidMessage);
        row("choices absent", body("{}"), {}, invalidMessage);
        row("half an object", body("{\"choices\":"), {}, invalidMessage);
        row("a page", Answer::html(200), {}, invalidMessage);
        row("nothing", body({}), {}, invalidMessage);
        for (const int status : {304, 401, 429, 500}) {
            row(qPrintable(u"status %1"_s.arg(status)), Answer::error(status, u"no"_s), {},
                httpMessage(status));
        }
    }
    void readsTheAnswer()
    {
        QFETCH(Answer, answer);
        m_server->enqueue(answer);
        OneShot run;
        run.task =
            m_engine.translateOnce(u"a"_s, Language::Chinese, configFor(*m_server), run.onText());
        QTRY_COMPARE(run.ends, 1);
        QTEST(run.text, "text");
        QTEST(run.message, "message");
        QCOMPARE(m_server->requests().size(), 1);
    }

    void meetsNetworkFaults_data()
    {
        QTest::addColumn<QList<Answer>>("answers");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("requests");
        const Answer good = completion(R"("good")");
        const Answer cut = good.inPackets(10, 0ms);
        QTest::newRow("reset, then success") << QList{Answer::reset(), good} << u""_s << 2;
        QTest::newRow("silence, then success") << QList{Answer::silence(), good} << u""_s << 2;
        QTest::newRow("two resets, no third attempt")
            << QList{Answer::reset(), Answer::reset(), good} << connectMessage << 2;
        QTest::newRow("two silences")
            << QList{Answer::silence(), Answer::silence()} << timeoutMessage << 2;
        // Nothing was given away yet, so that a broken answer is asked for again.
        QTest::newRow("broken off, then success")
            << QList{cut.cutAfter(2, step::Reset{}), good} << u""_s << 2;
        QTest::newRow("silence in the middle, then success")
            << QList{cut.cutAfter(2, step::Silence{}), good} << u""_s << 2;
        QTest::newRow("reset, then a status")
            << QList{Answer::reset(), Answer::error(503, u"x"_s)} << httpMessage(503) << 2;
    }
    void meetsNetworkFaults()
    {
        QFETCH(QList<Answer>, answers);
        QFETCH(QString, message);
        for (const Answer &each : std::as_const(answers))
            m_server->enqueue(each);
        TranslationConfig impatient = configFor(*m_server);
        impatient.requestTimeout = idleTimeout;
        OneShot run;
        QElapsedTimer clock;
        clock.start();
        run.task = m_engine.translateOnce(u"a"_s, Language::Chinese, impatient, run.onText());
        QTRY_COMPARE(run.ends, 1);
        QVERIFY(std::chrono::milliseconds(clock.elapsed()) >= retryPause);
        QCOMPARE(run.message, message);
        QCOMPARE(run.text, message.isEmpty() ? u"good"_s : QString());
        QTEST(int(m_server->requests().size()), "requests");
    }

    void saysNothingOnceItIsDropped()
    {
        m_server->enqueue(completion(R"("a")").delayedBy(50ms));
        OneShot dropped;
        dropped.task = m_engine.translateOnce(u"a"_s, Language::Chinese, configFor(*m_server),
                                              dropped.onText());
        QTRY_COMPARE(m_server->requests().size(), 1);
        dropped.task.cancel();
        // A later request outlasts whatever the first could still deliver.
        m_server->enqueue(completion(R"("b")").delayedBy(100ms));
        OneShot later;
        later.task =
            m_engine.translateOnce(u"b"_s, Language::Chinese, configFor(*m_server), later.onText());
        QTRY_COMPARE(later.ends, 1);
        QCOMPARE(later.text, u"b"_s);
        QCOMPARE(dropped.ends, 0);
    }

    void parsesVariants_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("max");
        QTest::addColumn<QStringList>("variants");
        const auto row = [](const char *name, const QString &answer, int max,
                            const QStringList &variants) {
            QTest::newRow(name) << answer << max << variants;
        };
        row("numbers, bullets and a repeat",
            u"1. おはよう\n2、おはよう\n・こんにちは\n- やあ\n5）またね"_s, 3,
            {u"おはよう"_s, u"こんにちは"_s, u"やあ"_s});
        row("one line", u"おはよう"_s, 3, {u"おはよう"_s});
        row("every separator", u"1.a\n2、b\n3)c\n4）d\n5：e\n6:f\n７．g"_s, 9,
            {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s});
        row("no separator after the digits", u"2024年は"_s, 3, {u"2024年は"_s});
        row("a separator after the digits", u"2024. 年"_s, 3, {u"年"_s});
        row("only the first number", u"1. 2. a"_s, 3, {u"2. a"_s});
        row("bullets at both ends", u"\u3000* •a・b* -"_s, 3, {u"a・b"_s});
        row("empty lines and bare bullets", u"\n \n3.\n・\n-- \na\n"_s, 3, {u"a"_s});
        row("CR LF is no line feed", u"a\r\nb"_s, 3, {u"a\r\nb"_s});
        row("a line feed after CR LF", u"a\r\nb\nc"_s, 3, {u"a\r\nb"_s, u"c"_s});
        row("none wanted", u"a\nb"_s, 0, {u"a"_s});
        row("nothing", {}, 3, {});
    }
    void parsesVariants()
    {
        QFETCH(QString, answer);
        QFETCH(int, max);
        QTEST(TranslationEngine::parseVariants(answer, max), "variants");
    }
};

QTEST_GUILESS_MAIN(TestOneShot)
#include "tst_one_shot.moc"
