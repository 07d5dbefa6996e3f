#include "road.h"

#include "localcloud/event_stream.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

namespace {

const QString chinese = u"请发一下报价"_s;
const QString japanese = u"見積もりを送ってください"_s;

} // namespace

// A walk through what the panel offers, by keys and as assistive tools see it.
class TestModes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aJapaneseResultIsReadAndChecked();
};

void TestModes::aJapaneseResultIsReadAndChecked()
{
    Road road;
    QVERIFY2(road.begin({{u"readingStyle"_s, u"romaji"_s}, {u"showBackTranslation"_s, true}}),
             qUtf8Printable(road.problem()));
    road.server.enqueue(localcloud::eventStream({u"見積もりを"_s, u"送ってください"_s}));
    road.server.enqueue(localcloud::eventStream({u"请把"_s, u"报价发给我"_s}));
    QVERIFY2(road.open(Editor::Toolkit::Gtk, chinese), qUtf8Printable(road.problem()));

    road.pull(Trigger::DoubleShift);
    QVERIFY2(road.product->waitForTranslation(japanese, patience), qUtf8Printable(road.problem()));
    const auto reading = road.product->waitForControl(u"读音"_s, patience);
    QVERIFY2(reading, qUtf8Printable(road.problem()));
    QCOMPARE(reading->text(), u"mitsumori o okutte kudasai"_s);
    const auto check = road.product->waitForControl(u"回译"_s, patience);
    QVERIFY2(check && waitUntil([&] { return check->text() == u"请把报价发给我"_s; }, patience),
             qUtf8Printable(road.problem()));
    QVERIFY2(road.prompt(1).endsWith(u"\n\n"_s + japanese), qUtf8Printable(road.prompt(1)));
}

QTEST_GUILESS_MAIN(TestModes)
#include "tst_modes.moc"
