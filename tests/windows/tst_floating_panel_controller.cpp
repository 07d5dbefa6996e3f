#include "panel_test.h"

#include <QClipboard>
#include <QPlainTextEdit>
#include <QScreen>

using namespace nivora;
using namespace nivora::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using localcloud::eventStream;

// The panel as its user meets it: found by accessible name, driven by keys.
class TestFloatingPanelController : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void theHeightFollowsTheContentWithinBounds_data();
    void theHeightFollowsTheContentWithinBounds();
    void thePlaceClearsTheMargins_data();
    void thePlaceClearsTheMargins();
    void itGrowsAtTheBottomWhileTextStreamsIn();
    void losingTheFocusHidesOnlyWhatNobodyMisses_data();
    void losingTheFocusHidesOnlyWhatNobodyMisses();
    void growthBringsADraggedPanelBack_data();
    void growthBringsADraggedPanelBack();
    void escapeHidesAPinnedPanel();
    void theEditorHoldsOnlyWhatWasTyped();
    void aLongParagraphIsShownAndCopiedWhole();
};

void TestFloatingPanelController::theHeightFollowsTheContentWithinBounds_data()
{
    QTest::addColumn<int>("content");
    QTest::addColumn<std::optional<int>>("screen");
    QTest::addColumn<int>("height");
    const std::optional<int> none;
    QTest::newRow("small") << 90 << std::optional(1000) << 100;
    QTest::newRow("fitting") << 333 << std::optional(1000) << 333;
    QTest::newRow("large") << 900 << std::optional(1000) << 700;
    QTest::newRow("a tiny screen wins over the least height") << 90 << std::optional(100) << 70;
    QTest::newRow("small, no screen") << 90 << none << 100;
    QTest::newRow("large, no screen") << 900 << none << 560;
}

void TestFloatingPanelController::theHeightFollowsTheContentWithinBounds()
{
    QFETCH(int, content);
    QFETCH(std::optional<int>, screen);
    QTEST(FloatingPanelController::clampedHeight(content, screen), "height");
}

void TestFloatingPanelController::thePlaceClearsTheMargins_data()
{
    QTest::addColumn<QPoint>("anchor");
    QTest::addColumn<QRect>("visible");
    QTest::addColumn<QPoint>("place");
    const QRect screen(0, 0, 1280, 800);
    QTest::newRow("as wished") << QPoint(100, 200) << screen << QPoint(100, 200);
    QTest::newRow("right edge") << QPoint(1200, 200) << screen << QPoint(1280 - 360 - 8, 200);
    QTest::newRow("bottom edge") << QPoint(100, 790) << screen << QPoint(100, 800 - 200 - 8);
    QTest::newRow("left and top") << QPoint(-50, -50) << screen << QPoint(8, 8);
    QTest::newRow("a screen left of and above the first")
        << QPoint(-1900, -700) << QRect(-1920, -1080, 1920, 1080) << QPoint(-1900, -700);
    QTest::newRow("a screen too small keeps right and top")
        << QPoint(50, 50) << QRect(0, 0, 300, 150) << QPoint(300 - 360 - 8, 8);
}

void TestFloatingPanelController::thePlaceClearsTheMargins()
{
    QFETCH(QPoint, anchor);
    QFETCH(QRect, visible);
    QTEST(FloatingPanelController::clampedPosition(anchor, {360, 200}, visible), "place");
}

void TestFloatingPanelController::itGrowsAtTheBottomWhileTextStreamsIn()
{
    QStringList lines;
    for (int i = 0; i < 40; ++i)
        lines << u"一行译文\n"_s;
    m_server->enqueue(eventStream(lines, {.pause = 2ms}));
    showSelection(u"hello"_s);
    const QPoint place = m_controller->panel()->pos();
    QList<int> heights;
    while (m_session->isTranslating()) {
        QTest::qWait(5);
        heights << m_controller->panel()->height();
        QCOMPARE(m_controller->panel()->pos(), place);
    }
    QTRY_VERIFY(m_controller->panel()->height() > 320);
    QVERIFY(std::ranges::is_sorted(heights));
    QVERIFY(heights.last() > heights.first());
    const int screen = m_controller->panel()->screen()->availableGeometry().height();
    QVERIFY(m_controller->panel()->height() <= screen * 7 / 10);
}

void TestFloatingPanelController::losingTheFocusHidesOnlyWhatNobodyMisses_data()
{
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("pinned");
    QTest::addColumn<PanelMode>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("stays");
    QTest::newRow("selection") << true << false << PanelMode::Selection << u""_s << false;
    QTest::newRow("selection, pinned") << true << true << PanelMode::Selection << u""_s << true;
    QTest::newRow("selection, switched off")
        << false << false << PanelMode::Selection << u""_s << true;
    QTest::newRow("compose, empty") << true << false << PanelMode::Compose << u" \n"_s << false;
    QTest::newRow("compose, typed") << true << false << PanelMode::Compose << u"甲"_s << true;
    QTest::newRow("reply, typed") << true << false << PanelMode::Reply << u"甲"_s << true;
}

void TestFloatingPanelController::losingTheFocusHidesOnlyWhatNobodyMisses()
{
    QFETCH(bool, closes);
    QFETCH(bool, pinned);
    QFETCH(PanelMode, mode);
    QFETCH(QString, typed);
    m_settings->closeOnResignFocus.set(closes);
    m_session->setPinned(pinned);
    m_server->enqueue(localcloud::Answer::silence());
    if (mode == PanelMode::Selection) {
        m_session->setSource(u"hello"_s, true, std::nullopt);
    } else {
        mode == PanelMode::Compose ? m_session->prepareManualInput(true, std::nullopt)
                                   : m_session->prepareReply(u"x"_s, Language::English);
        m_session->editSource(typed);
    }
    m_controller->show(mode, std::nullopt);
    QVERIFY(QTest::qWaitForWindowActive(m_controller->panel()));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QTEST(m_controller->panel()->isVisible(), "stays");
}

void TestFloatingPanelController::growthBringsADraggedPanelBack_data()
{
    QTest::addColumn<bool>("released");
    QTest::newRow("not while it is dragged") << false;
    QTest::newRow("afterwards") << true;
}

void TestFloatingPanelController::growthBringsADraggedPanelBack()
{
    QFETCH(bool, released);
    m_server->enqueue(localcloud::Answer::silence());
    showSelection(u"hello"_s);
    const FloatingPanel *panel = m_controller->panel();
    const QPoint before = panel->pos();
    const QPoint grip(200, 16);
    const QPoint way(30, 500); // over the lower edge of the screen
    QTest::mousePress(panel->windowHandle(), Qt::LeftButton, {}, grip);
    QTest::mouseMove(panel->windowHandle(), grip + way);
    QTRY_COMPARE(panel->pos(), before + way);
    if (released)
        QTest::mouseRelease(panel->windowHandle(), Qt::LeftButton, {}, grip);
    const int height = panel->height();
    m_session->useVariant(u"一行\n"_s.repeated(40));
    QTRY_VERIFY(panel->height() > height + 100);
    QCOMPARE(panel->pos(), released ? before : before + way);
    QTest::mouseRelease(panel->windowHandle(), Qt::LeftButton, {}, grip);
    QCOMPARE(panel->pos(), released ? before : before + way);
}

void TestFloatingPanelController::escapeHidesAPinnedPanel()
{
    m_server->enqueue(eventStream({u"x"_s}, {.pause = 20ms}));
    m_session->setPinned(true);
    showSelection(u"hello"_s);
    QTest::keyClick(m_controller->panel()->windowHandle(), Qt::Key_Escape);
    QVERIFY(!m_controller->panel()->isVisible());
    QTRY_COMPARE(m_session->phase().kind, Phase::Kind::Done); // goes on behind
}

void TestFloatingPanelController::theEditorHoldsOnlyWhatWasTyped()
{
    m_session->prepareManualInput(false, std::nullopt);
    m_controller->show(PanelMode::Compose, std::nullopt);
    auto *editor = named<QPlainTextEdit>(u"原文"_s);
    QTest::keyClicks(editor, u"hi"_s);
    showSelection(u"selected elsewhere"_s);
    QCOMPARE(editor->toPlainText(), QString());
    m_session->prepareReply(u"selected elsewhere"_s, Language::English);
    QCOMPARE(editor->toPlainText(), QString());
}

void TestFloatingPanelController::aLongParagraphIsShownAndCopiedWhole()
{
    QStringList pieces;
    for (int i = 0; i < 3000; ++i)
        pieces << u"第%1句。"_s.arg(i) + (i % 1000 == 999 ? u"\n"_s : QString());
    m_server->enqueue(eventStream(pieces));
    showSelection(u"hello"_s);
    QTRY_COMPARE(m_session->phase().kind, Phase::Kind::Done);
    QTRY_COMPARE(text(u"译文"_s), pieces.join(QString()));
    QWidget *view = named(u"译文"_s);
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), pieces.join(QString()));
}

QTEST_MAIN(TestFloatingPanelController)
#include "tst_floating_panel_controller.moc"
