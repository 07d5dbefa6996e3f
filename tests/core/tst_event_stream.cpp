#include "core/event_stream.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

class TestEventStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesEndInEveryWayHoweverTheBytesAreCut_data();
    void linesEndInEveryWayHoweverTheBytesAreCut();
    void overlongLinesAreDroppedWhole();
    void aWalkStopsWhenTold();
    void contentIsReadLeniently_data();
    void contentIsReadLeniently();
    void usageNeedsBothCounts_data();
    void usageNeedsBothCounts();
    void onlyDataLinesAreEvents();
};

void TestEventStream::linesEndInEveryWayHoweverTheBytesAreCut_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("lines");
    const QByteArrayList lines{"data: 译文", "", "data: b"};
    QTest::newRow("LF") << "data: 译文\n\ndata: b\n"_ba << lines;
    QTest::newRow("CRLF") << "data: 译文\r\n\r\ndata: b\r\n"_ba << lines;
    QTest::newRow("CR") << "data: 译文\r\rdata: b\r"_ba << lines;
    QTest::newRow("no end at the end") << "data: 译文\n\ndata: b"_ba << lines;
    QTest::newRow("mixed") << "a\r\n\rb\n\rc"_ba << QByteArrayList{"a", "", "b", "", "c"};
    QTest::newRow("nothing") << ""_ba << QByteArrayList{};
}

void TestEventStream::linesEndInEveryWayHoweverTheBytesAreCut()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArrayList, lines);
    for (qsizetype portion = 1; portion <= bytes.size() + 1; ++portion) {
        LineSplitter splitter;
        QByteArrayList seen;
        const auto collect = [&seen](QByteArrayView line) {
            seen << line.toByteArray();
            return true;
        };
        for (qsizetype at = 0; at < bytes.size(); at += portion)
            splitter.feed(bytes.sliced(at, std::min(portion, bytes.size() - at)), collect);
        splitter.finish(collect);
        QCOMPARE(seen, lines);
    }
}

void TestEventStream::overlongLinesAreDroppedWhole()
{
    LineSplitter splitter;
    QByteArrayList seen;
    const auto collect = [&seen](QByteArrayView line) {
        seen << line.toByteArray();
        return true;
    };
    const QByteArray megabyte(1024 * 1024, 'x');
    for (qsizetype fed = 0; fed <= LineSplitter::maximumLine; fed += megabyte.size())
        splitter.feed(megabyte, collect);
    splitter.feed("tail\nnext\n", collect);
    QCOMPARE(seen, QByteArrayList{"next"});
}

void TestEventStream::aWalkStopsWhenTold()
{
    LineSplitter splitter;
    int count = 0;
    splitter.feed("a\nb\nc\n", [&count](QByteArrayView) { return ++count < 2; });
    QCOMPARE(count, 2);
}

void TestEventStream::contentIsReadLeniently_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<std::optional<QString>>("content");
    const auto content = [](const QByteArray &value) {
        return R"({"choices":[{"delta":{"content":)" + value + "}}]}";
    };
    const auto text = [](const QString &value) { return std::optional(value); };
    const std::optional<QString> none;
    QTest::newRow("text") << content(R"("x")") << text(u"x"_s);
    QTest::newRow("empty text") << content(R"("")") << text(u""_s);
    QTest::newRow("integer") << content("42") << text(u"42"_s);
    QTest::newRow("minus one") << content("-1") << text(u"-1"_s);
    QTest::newRow("zero") << content("0") << text(u"0"_s);
    QTest::newRow("whole number with a fraction part") << content("42.0") << text(u"42"_s);
    QTest::newRow("64 bits") << content("9007199254740993") << text(u"9007199254740993"_s);
    QTest::newRow("shortest decimal") << content("0.1") << text(u"0.1"_s);
    QTest::newRow("null") << content("null") << none;
    QTest::newRow("boolean") << content("true") << none;
    QTest::newRow("array") << content("[]") << none;
    QTest::newRow("object") << content("{}") << none;
    QTest::newRow("no content") << R"({"choices":[{"delta":{"role":"assistant"}}]})"_ba << none;
    QTest::newRow("no delta") << R"({"choices":[{}]})"_ba << none;
    QTest::newRow("null delta") << R"({"choices":[{"delta":null}]})"_ba << none;
    QTest::newRow("no choices") << R"({"choices":[]})"_ba << none;
    QTest::newRow("no list") << R"({"choices":{}})"_ba << none;
    QTest::newRow("no object") << "[]"_ba << none;
    QTest::newRow("cut off") << R"({"choices":[{"delta":{"cont)"_ba << none;
    QTest::newRow("the first choice counts")
        << R"({"choices":[{"delta":{"content":"a"}},{"delta":{"content":"b"}}]})"_ba
        << text(u"a"_s);
    QTest::newRow("a spoilt second choice spoils the chunk")
        << R"({"choices":[{"delta":{"content":"a"}},{"delta":7}]})"_ba << none;
}

void TestEventStream::contentIsReadLeniently()
{
    QFETCH(QByteArray, payload);
    QTEST(parseDelta(payload), "content");
}

void TestEventStream::usageNeedsBothCounts_data()
{
    QTest::addColumn<QByteArray>("usage");
    QTest::addColumn<bool>("reported");
    QTest::newRow("both") << R"({"prompt_tokens":3,"completion_tokens":4})"_ba << true;
    QTest::newRow("more than these")
        << R"({"prompt_tokens":3,"completion_tokens":4,"x":{}})"_ba << true;
    QTest::newRow("one") << R"({"prompt_tokens":3})"_ba << false;
    QTest::newRow("null count") << R"({"prompt_tokens":3,"completion_tokens":null})"_ba << false;
    QTest::newRow("text count") << R"({"prompt_tokens":"3","completion_tokens":4})"_ba << false;
    QTest::newRow("fraction") << R"({"prompt_tokens":3.5,"completion_tokens":4})"_ba << false;
    QTest::newRow("null") << "null"_ba << false;
}

void TestEventStream::usageNeedsBothCounts()
{
    QFETCH(QByteArray, usage);
    // Text and usage are independent: a chunk without a usable text still counts.
    const auto event = parseEventLine("data: {\"choices\":7,\"usage\":" + usage + '}');
    QVERIFY(event && !event->content);
    QTEST(event->usage.has_value(), "reported");
    if (event->usage)
        QCOMPARE(*event->usage, (TokenUsage{3, 4}));
}

void TestEventStream::onlyDataLinesAreEvents()
{
    for (const auto *line : {"", ": comment", "event: x", " data: {}", "DATA: {}", "id: 1"})
        QVERIFY2(!parseEventLine(line), line);
    for (const auto *line : {"data:[DONE]", "data: [DONE]", "data: \t [DONE] "})
        QVERIFY2(parseEventLine(line)->done, line);
    QVERIFY(!parseEventLine("data: nonsense")->content);
}

QTEST_GUILESS_MAIN(TestEventStream)
#include "tst_event_stream.moc"
