#include "panel_test.h"

#include <QTextLayout>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;

// Where the lines of a translation break, and what stands in them.
class TestTextLayout : public PanelTest
{
    Q_OBJECT

private:
    // The text in the panel, arrived in pieces of this size.
    QWidget *shown(const QString &text, qsizetype piece)
    {
        m_session->useVariant(text.first(std::min(piece, text.size())));
        for (qsizetype at = piece; at < text.size(); at += piece) {
            Q_EMIT m_session->translatedTextAppended(
                text.sliced(at).first(std::min(piece, text.size() - at)));
            if (at % 50 < piece)
                QTest::qWait(17); // a frame
        }
        return named(u"译文"_s);
    }

private Q_SLOTS:
    void init() { start(); }

    void aParagraphBreaksWhereItWouldInOneLayout_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("rightToLeft");
        QTest::newRow("Chinese") << u"今天天气很好，我们去公园散步吧。"_s.repeated(100) << false;
        QTest::newRow("English") << u"It is a fine day, so let us walk. "_s.repeated(60) << false;
        QTest::newRow("Arabic") << u"مرحبا بالعالم، هذا يوم جميل. "_s.repeated(60) << true;
        QTest::newRow("zero-width") << u"今\u200b天\u200d天\u2060气\ufeff"_s.repeated(300) << false;
        QTest::newRow("much zero-width")
            << (u"今"_s + QString(150, QChar(0x200B))).repeated(100) << false;
        QTest::newRow("one word") << u"abcdefghij"_s.repeated(1000) << false;
        QTest::newRow("tabs") << u"a\tbc\t\tdef "_s.repeated(200) << false;
        QTest::newRow("emoji") << u"👨‍👩‍👧‍👦👍🏽é "_s.repeated(120) << false;
    }

    void aParagraphBreaksWhereItWouldInOneLayout()
    {
        QFETCH(const QString, text);
        QFETCH(const bool, rightToLeft);
        showSelection(u"hello"_s);
        QWidget *view = shown(text, 997);
        QTRY_COMPARE(this->text(u"译文"_s), text);

        QTextLayout whole(text, view->font());
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        whole.setTextOption(option);
        QList<int> expected;
        whole.beginLayout();
        for (QTextLine line = whole.createLine(); line.isValid(); line = whole.createLine()) {
            line.setLineWidth(view->width());
            expected << line.textStart();
        }
        whole.endLayout();

        const auto starts = [&] {
            QAccessibleTextInterface *content =
                QAccessible::queryAccessibleInterface(view)->textInterface();
            QList<int> found;
            int bottom = INT_MIN;
            for (int at = 0; at < text.size(); ++at) {
                const QRect place = content->characterRect(at);
                if (place.center().y() > bottom)
                    found << at;
                bottom = std::max(bottom, place.bottom());
            }
            return found;
        };
        QTRY_COMPARE(starts(), expected);
    }

    void whatHasNoShapeShowsNone_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("looksLike");
        QTest::newRow("control characters") << u"a\x01中\x1b文\x7f\u0090b"_s << u"a中文b"_s;
        QTest::newRow("a null") << u"a\0b"_s << u"ab"_s;
        QTest::newRow("line ends of every kind")
            << u"a\r\nb\vc\u2028d\u2029e\u0085f\r"_s << u"a\nb\nc\nd\ne\nf"_s;
        QTest::newRow("marks of the text's storage") << u"\ufeffa\ufffc\ufff9b\uffff"_s << u"ab"_s;
        QTest::newRow("half a character") << u"a"_s + QChar(0xD83D) + u"b"_s << u"a\ufffdb"_s;
    }

    void whatHasNoShapeShowsNone()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, looksLike);
        showSelection(u"hello"_s);
        const auto picture = [&](const QString &of) {
            return shown(of, of.size())->grab().toImage();
        };
        QCOMPARE(picture(text), picture(looksLike));
    }
};

QTEST_MAIN(TestTextLayout)
#include "tst_text_layout.moc"
