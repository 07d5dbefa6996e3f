#include "core/event_stream.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

class TestEventStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesEndInEveryWayHoweverTheBytesAreCut_data()
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

    void linesEndInEveryWayHoweverTheBytesAreCut()
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

    void overlongLinesAreDroppedWhole()
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
};

QTEST_GUILESS_MAIN(TestEventStream)
#include "tst_event_stream.moc"
