#include "road.h"

#include "localcloud/event_stream.h"

#include <QTest>

#include <X11/keysym.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using namespace nivora::test;

namespace {

constexpr int gapBelowSelection = 6;
constexpr int screenMargin = 8;
constexpr int panelWidth = 360;

} // namespace

// The main job: text selected in a real editor is translated and replaced.
class TestReplace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesTheSelection_data()
    {
        QTest::addColumn<Editor::Toolkit>("toolkit");
        QTest::addColumn<Trigger>("trigger");
        QTest::newRow("GTK, double Shift") << Editor::Toolkit::Gtk << Trigger::DoubleShift;
        QTest::newRow("GTK, chord") << Editor::Toolkit::Gtk << Trigger::Chord;
        QTest::newRow("Qt, double Shift") << Editor::Toolkit::Qt << Trigger::DoubleShift;
        QTest::newRow("Qt, chord") << Editor::Toolkit::Qt << Trigger::Chord;
    }

    void replacesTheSelection()
    {
        QFETCH(const Editor::Toolkit, toolkit);
        QFETCH(const Trigger, trigger);
        const auto text = u"请发一下报价，谢谢！\n第二行：café 🎈 \"引号\""_s;
        const auto translation = u"見積もりを送ってください。\n二行目：カフェ 🎈"_s;

        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream(
            {u"見積もりを"_s, u"送ってください。\n"_s, u"二行目：カフェ 🎈"_s},
            {.pause = std::chrono::milliseconds(20)}));
        QVERIFY(road.clipboard->offer(
            {{"UTF8_STRING", "from before"}, {"text/html", "<i>from before</i>"}}));
        QVERIFY2(road.open(toolkit, text), qUtf8Printable(road.problem()));
        const auto selection = road.editor->selectionBounds();
        QVERIFY(!selection.isEmpty());
        road.user->movePointer({5, 795});

        road.pull(trigger);
        const auto panel = road.product->waitForPanel(patience);
        QVERIFY2(panel, qUtf8Printable(road.problem()));
        QCOMPARE(panel->geometry.topLeft(),
                 QPoint(std::max(selection.x(), screenMargin),
                        selection.y() + selection.height() + gapBelowSelection));
        QCOMPARE(panel->geometry.width(), panelWidth);

        QVERIFY2(road.product->waitForTranslation(translation, patience),
                 qUtf8Printable(road.problem()));
        QCOMPARE(road.server.requests().size(), 1);
        QCOMPARE(road.server.requests().first().path, "/v1/chat/completions");
        QVERIFY2(road.prompt(0).endsWith(u"\n\n"_s + text), qUtf8Printable(road.prompt(0)));
        QVERIFY(road.product->control(u"Ctrl+↩ 替换原文"_s));

        road.user->press({XK_Control_L, XK_Return});
        QVERIFY(road.product->waitForPanelGone(patience));
        QVERIFY2(road.editor->waitForText(translation, patience),
                 qUtf8Printable(road.editor->text()));
        QVERIFY(waitUntil([&] { return road.clipboard->text() == u"from before"_s; }, patience));
        QCOMPARE(road.clipboard->read("text/html"), "<i>from before</i>");
        QCOMPARE(road.user->activeWindow(), road.editor->window());
        QVERIFY(road.product->isRunning());
    }

    void leavesTheRestOfTheDocumentAlone()
    {
        Road road;
        QVERIFY2(road.begin(), qUtf8Printable(road.problem()));
        road.server.enqueue(localcloud::eventStream({u"こんにちは"_s}));
        QVERIFY2(road.open(Editor::Toolkit::Gtk, u"你好\n世界"_s, false),
                 qUtf8Printable(road.problem()));
        road.user->press({XK_Control_L, XK_Home});
        road.user->press({XK_Shift_L, XK_End});
        QVERIFY(waitUntil([&] { return road.editor->selectedText() == u"你好"_s; }, patience));

        road.pull(Trigger::DoubleShift);
        QVERIFY2(road.product->waitForPanel(patience), qUtf8Printable(road.problem()));
        QVERIFY2(road.product->waitForTranslation(u"こんにちは"_s, patience),
                 qUtf8Printable(road.problem()));
        QVERIFY2(road.prompt(0).endsWith(u"\n\n你好"_s), qUtf8Printable(road.prompt(0)));
        road.user->press({XK_Control_L, XK_Return});
        QVERIFY2(road.editor->waitForText(u"こんにちは\n世界"_s, patience),
                 qUtf8Printable(road.editor->text()));
        // Nothing was on the clipboard, and nothing is left there.
        QVERIFY(waitUntil([&] { return !road.clipboard->text(); }, patience));
    }
};

QTEST_GUILESS_MAIN(TestReplace)
#include "tst_replace.moc"
