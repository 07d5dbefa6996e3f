// What the engine makes of a stream, and of being cancelled in the middle of one.

#include "engine_run.h"

#include "localcloud/event_stream.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace nivora;
using namespace nivora::localcloud;
using namespace nivora::test;

namespace {
QByteArray data(const QByteArray &content)
{
    return "data: {\"choices\":[{\"delta\":{\"content\":" + content + "}}]}";
}

const QByteArray usage34 = R"("usage":{"prompt_tokens":3,"completion_tokens":4})";

} // namespace

class TestTranslationEngine : public EngineTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void readsTheStream_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QStringList>("pieces");
        QTest::addColumn<int>("usages");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const Answer &answer, const QStringList &pieces,
                            int usages = 0) {
            QTest::newRow(name) << answer << pieces << usages
                                << (pieces.isEmpty() ? emptyMessage : QString());
        };
        const auto lines = [&](const char *name, QByteArrayList each, const QStringList &pieces,
                               int usages = 0) {
            row(name, lineStream(each << "data: [DONE]"), pieces, usages);
        };
        const QStringList greeting{u"你"_s, u"好，👋🏽 "_s, u" é"_s};

        row("pieces in order", eventStream(greeting), greeting);
        row("CRLF", eventStream(greeting, {.lineEnd = LineEnd::CrLf}), greeting);
        row("CR", eventStream(greeting, {.lineEnd = LineEnd::Cr}), greeting);
        row("comments and other fields", eventStream(greeting, {.decorated = true}), greeting);
        row("characters cut in two", eventStream(greeting).splitInsideCharacters(), greeting);
        row("byte by byte, CRLF",
            eventStream({u"你"_s, u"好"_s}, {.lineEnd = LineEnd::CrLf}).inPackets(1, 0ms),
            {u"你"_s, u"好"_s});
        row("no end marker", eventStream(greeting, {.done = false}), greeting);
        row("ended by the connection's end",
            eventStream(greeting, {.done = false}).withFraming(Answer::Framing::UntilClose),
            greeting);
        row("usage at the end", eventStream(greeting, {.usage = TokenCounts{3, 4}}), greeting, 1);
        row("a page instead of a stream", Answer::html(200), {});
        row("nothing at all", Answer::plain(200, {}, "text/event-stream"), {});

        lines("only the end marker", {}, {});
        lines("only usage", {"data: {\"choices\":[]," + usage34 + "}"}, {}, 1);
        lines("after the end marker", {data(R"("a")"), "data: [DONE]", data(R"("b")")}, {u"a"_s});
        lines("no blank after the colon", {data(R"("a")").replace("data: ", "data:")}, {u"a"_s});
        lines("several blanks and a tab",
              {data(R"("a")").replace("data: ", "data:  \t  ") + " \t", data(R"("b")")},
              {u"a"_s, u"b"_s});
        lines("no event lines", {"DATA: {}", " " + data(R"("a")"), "dat", ":", data(R"("b")")},
              {u"b"_s});
        lines(
            "white space at the start",
            {data(R"("\n\n")"), data(R"("\u3000 Hello")"), data(R"("  ")"), data(R"(" world\n")")},
            {u"Hello"_s, u"  "_s, u" world\n"_s});
        lines("only white space", {data(R"(" \n\t")")}, {});
        lines("usage with white space at the start",
              {R"(data: {"choices":[{"delta":{"content":" "}}],)" + usage34 + "}", data(R"("a")")},
              {u"a"_s}, 0);
        lines("usage with a piece",
              {R"(data: {"choices":[{"delta":{"content":"a"}}],)" + usage34 + "}"}, {u"a"_s}, 1);
        lines("usage twice",
              {"data: {\"choices\":[]," + usage34 + "}", data(R"("a")"), "data: {" + usage34 + "}"},
              {u"a"_s}, 2);
        lines("usage beside malformed choices",
              {"data: {\"choices\":7," + usage34 + "}", data(R"("a")")}, {u"a"_s}, 1);
        lines("half a usage",
              {R"(data: {"choices":[],"usage":{"prompt_tokens":3}})",
               R"(data: {"usage":{"prompt_tokens":3,"completion_tokens":null}})",
               R"(data: {"usage":{"prompt_tokens":3,"completion_tokens":"4"}})",
               R"(data: {"usage":{"prompt_tokens":3.5,"completion_tokens":4}})",
               R"(data: {"usage":null})", data(R"("a")")},
              {u"a"_s}, 0);
        lines("numbers as content",
              {data("42"), data("-7"), data("0"), data("42.0"), data("0.1"),
               data("9007199254740993")},
              {u"42"_s, u"-7"_s, u"0"_s, u"42"_s, u"0.1"_s, u"9007199254740993"_s});
        lines("null, object, array, truth as content",
              {data("null"), data(R"({"a":"b"})"), data(R"(["c"])"), data("true"), data(R"("")"),
               data(R"("x")")},
              {u"x"_s});
        lines("no content",
              {R"(data: {"choices":[{"delta":{"role":"assistant"}}]})", R"(data: {"choices":[{}]})",
               R"(data: {"choices":[{"delta":null}]})", R"(data: {"choices":[]})", "data: {}",
               data(R"("x")")},
              {u"x"_s});
        lines("only the first choice",
              {R"(data: {"choices":[{"delta":{}},{"delta":{"content":"no"}}]})", data(R"("x")")},
              {u"x"_s});
        lines("malformed lines",
              {data(R"("cut off")").chopped(8), "data:", "data: nonsense", "data: [1]", "data: 7",
               "data: {]}", R"(data: {"choices":{"delta":1}})", "data: \xFF\xFE",
               R"(data: {"choices":[{"delta":{"content":"a"}},{"delta":7}]})",
               QByteArray("data: {\0}", 9), data(R"("x")")},
              {u"x"_s});
        lines("bytes that are no UTF-8",
              {data("\"a\xFF"
                    "b\"")},
              {u"a\uFFFDb"_s});
        Answer open = lineStream({data(R"("a")"), data(R"("b")")});
        std::get<step::Send>(open.steps.back()).bytes.chop(1);
        row("a last line without an end", open, {u"a"_s, u"b"_s});
        // All of it in one packet, the end of the connection included.
        const Answer closing = open.withHeader("Connection", "close");
        row("ended by the connection's end, at once", open.withFraming(Answer::Framing::UntilClose),
            {u"a"_s, u"b"_s});
        row("a length, closed at once", closing.withFraming(Answer::Framing::Length),
            {u"a"_s, u"b"_s});

        const QByteArray large(10 * 1024 * 1024, 'x');
        lines("a piece of 10 MB", {data("\"" + large + "\"")}, {QString::fromLatin1(large)});
        lines("10 MB of nonsense", {"data: " + large, large, ":" + large, data(R"("a")")},
              {u"a"_s});
    }
    void readsTheStream()
    {
        QFETCH(Answer, answer);
        QFETCH(QStringList, pieces);
        QFETCH(int, usages);
        QFETCH(QString, message);
        m_server->enqueue(answer);
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.message, message);
        QVERIFY2(run.pieces == pieces,
                 qPrintable(run.pieces.join(u'|').first(qMin(200, run.pieces.join(u'|').size()))));
        QCOMPARE(run.usage, QList<TokenUsage>(usages, TokenUsage{3, 4}));
        QCOMPARE(run.misplaced, 0);
        QCOMPARE(m_server->requests().size(), 1);
    }

    void givesEachPieceAsItArrives()
    {
        m_server->enqueue(eventStream({u"a"_s, u"b"_s}).cutAfter(1, step::Silence{}));
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.pieces, QStringList(u"a"_s));
        QVERIFY(run.task.isRunning());
    }

    void givesTheTranslationIdOnceAndFirst_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QStringList>("ids");
        QTest::newRow("present") << "id-1"_ba << QStringList(u"id-1"_s);
        QTest::newRow("empty") << ""_ba << QStringList();
        QTest::newRow("absent") << QByteArray() << QStringList();
    }
    void givesTheTranslationIdOnceAndFirst()
    {
        QFETCH(QByteArray, header);
        QFETCH(QStringList, ids);
        m_server->enqueue(eventStream({u"a"_s}, {.translationId = header}));
        Run run;
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.ends, 1);
        QCOMPARE(run.ids, ids);
        QCOMPARE(run.misplaced, 0);
    }

    void deliversNothingAfterCancel()
    {
        m_server->enqueue(eventStream(QStringList(50, u"a"_s), {.pause = 2ms}));
        Run run;
        run.onPiece = [&] {
            if (run.pieces.size() == 2)
                run.task.cancel();
        };
        run.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(run.pieces.size(), 2);
        QVERIFY(!run.task.isRunning());
        // The server sees it, long before it has sent everything.
        QTRY_COMPARE(m_server->openConnections(), 0);
        QCOMPARE(run.pieces.size(), 2);
        QCOMPARE(run.ends, 0);
    }

    void deliversNothingAfterCancelWithinOnePacket()
    {
        Answer together;
        together.steps = {step::Send{data(R"("a")") + '\n' + data(R"("b")") + "\ndata: [DONE]\n"}};
        m_server->enqueue(together.cutAfter(1, step::Silence{}));
        Run run;
        run.onPiece = [&] { run.task = {}; };
        run.start(m_engine, configFor(*m_server));
        QSignalSpy closed(m_server.get(), &Server::connectionClosed);
        QVERIFY(closed.wait());
        QCOMPARE(run.pieces, QStringList(u"a"_s));
        QCOMPARE(run.ends, 0);
    }

    void sendsNothingMoreAfterCancelDuringThePause()
    {
        m_server->enqueue(Answer::reset());
        Run cancelled;
        cancelled.start(m_engine, configFor(*m_server));
        QSignalSpy closed(m_server.get(), &Server::connectionClosed);
        QVERIFY(closed.wait());
        cancelled.task.cancel();
        // Longer than the pause.
        m_server->enqueue(eventStream({u"a"_s}).delayedBy(retryPause * 3 / 2));
        Run other;
        other.start(m_engine, configFor(*m_server));
        QTRY_COMPARE(other.ends, 1);
        QCOMPARE(m_server->requests().size(), 2);
        QCOMPARE(cancelled.ends, 0);
    }

    void keepsSimultaneousCallsApart()
    {
        m_server->setHandler([](const Request &request) {
            const QString text = QJsonDocument::fromJson(request.body)[u"text"_s].toString();
            return eventStream(QStringList(10, text), {.pause = 3ms});
        });
        std::array<Run, 5> runs;
        for (std::size_t i = 0; i < runs.size(); ++i)
            runs[i].start(m_engine, configFor(*m_server), QString::number(i));
        runs[2].onPiece = [&] { runs[2].task.cancel(); };
        QTRY_VERIFY(std::ranges::all_of(
            runs, [&](const Run &run) { return run.ends == 1 || &run == &runs[2]; }));
        for (std::size_t i = 0; i < runs.size(); ++i) {
            QCOMPARE(runs[i].pieces, QStringList(i == 2 ? 1 : 10, QString::number(i)));
            QCOMPARE(runs[i].message, QString());
        }
        QCOMPARE(runs[2].ends, 0);
    }

    void startsAnewFromWithinTheLastCallback()
    {
        m_server->enqueue(eventStream({u"a"_s}));
        m_server->enqueue(eventStream({u"b"_s}));
        Run second;
        Run first;
        auto callbacks = first.callbacks();
        callbacks.onFinished = [&](const std::optional<TranslationError> &) {
            second.start(m_engine, configFor(*m_server));
            first.task = {};
        };
        first.task =
            m_engine.translate(u"x"_s, Language::English, {}, configFor(*m_server), callbacks);
        QTRY_COMPARE(second.ends, 1);
        QCOMPARE(second.pieces, QStringList(u"b"_s));
    }
};

QTEST_GUILESS_MAIN(TestTranslationEngine)
#include "tst_translation_engine.moc"
