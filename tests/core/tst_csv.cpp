#include "core/csv.h"

#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;

using Records = std::vector<QStringList>;

class TestCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyTextComesBack()
    {
        const Records records{{u"报价"_s, u"見積もり"_s},
                              {u"a,b"_s, u"say \"hi\""_s, u"tab\there"_s},
                              {u"two\r\nlines"_s, u"\n"_s, u"\""_s},
                              {u" blanks "_s, QString(), u"last"_s}};
        QString text;
        for (const QStringList &record : records)
            text += csvRecord(record);
        QVERIFY2(parseCsv(text) == records, qUtf8Printable(text));
        QCOMPARE(csvRecord(records[1]), u"\"a,b\",\"say \"\"hi\"\"\",tab\there\r\n"_s);
    }

    void recordsAreReadWithGoodWill_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QChar>("separator");
        QTest::addColumn<Records>("records");
        const QChar comma = u',';
        QTest::newRow("nothing") << u""_s << comma << Records{};
        QTest::newRow("line ends of all kinds, empty lines between")
            << u"\na,b\r\n\r\nc\rd"_s << comma << Records{{u"a"_s, u"b"_s}, {u"c"_s}, {u"d"_s}};
        QTest::newRow("tabs") << u"a,b\t\"c\td\""_s << QChar(u'\t')
                              << Records{{u"a,b"_s, u"c\td"_s}};
        QTest::newRow("quotes amid a field")
            << u"5\" pipe,x"_s << comma << Records{{u"5\" pipe"_s, u"x"_s}};
        QTest::newRow("text behind a quoted field")
            << u"\"a\"b,c"_s << comma << Records{{u"ab"_s, u"c"_s}};
        QTest::newRow("no closing quote") << u"a,\"b\nc"_s << comma << Records{{u"a"_s, u"b\nc"_s}};
        QTest::newRow("only separators") << u",,"_s << comma << Records{{u""_s, u""_s, u""_s}};
    }

    void recordsAreReadWithGoodWill()
    {
        QFETCH(const QString, text);
        QFETCH(const QChar, separator);
        QFETCH(const Records, records);
        QVERIFY2(parseCsv(text, separator) == records, qUtf8Printable(text));
    }
};

QTEST_GUILESS_MAIN(TestCsv)
#include "tst_csv.moc"
