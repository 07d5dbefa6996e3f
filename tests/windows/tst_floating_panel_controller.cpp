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

    void itGrowsAtTheBottomWhileTextStreamsIn()
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

    void losingTheFocusHidesOnlyWhatNobodyMisses_data()
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

    void losingTheFocusHidesOnlyWhatNobodyMisses()
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

    void escapeHidesAPinnedPanel()
    {
        m_server->enqueue(eventStream({u"x"_s}, {.pause = 20ms}));
        m_session->setPinned(true);
        showSelection(u"hello"_s);
        QTest::keyClick(m_controller->panel()->windowHandle(), Qt::Key_Escape);
        QVERIFY(!m_controller->panel()->isVisible());
        QTRY_COMPARE(m_session->phase().kind, Phase::Kind::Done); // goes on behind
    }

    void theEditorHoldsOnlyWhatWasTyped()
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

    void aLongParagraphIsShownAndCopiedWhole()
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
};

QTEST_MAIN(TestFloatingPanelController)
#include "tst_floating_panel_controller.moc"
