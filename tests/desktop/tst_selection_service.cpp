#include "desktop/selection_service.h"

#include "platform/accessibility.h"
#include "platform_memory/memory_desktop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using namespace nivora;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using memory::MemoryClipboard;
using platform::FocusedElement;

namespace {
constexpr qint64 editorProcess = 4711;

platform::ForeignWindow editorWindow(const QString &className = u"Editor"_s)
{
    return {77, editorProcess, className, className.toLower()};
}

// An editable field with this text selected.
FocusedElement field(const QString &selected)
{
    FocusedElement element;
    element.processId = editorProcess;
    element.applicationId = u"editor"_s;
    element.role = u"AXTextArea"_s;
    element.attributes = {u"AXValue"_s};
    element.valueSettable = true;
    element.selectedTextRange = FocusedElement::TextRange{3, int(selected.size())};
    element.selectedText = selected;
    element.selectedTextBounds = QRectF(100, 200, 50, 18);
    element.frame = QRectF(90, 190, 400, 300);
    return element;
}

platform::ClipboardContents richContents()
{
    return {
        {{"UTF8_STRING", "UTF8_STRING", 8, "mine"}, {"text/html", "text/html", 8, "<b>mine</b>"}}};
}

} // namespace

class TestSelectionService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_desktop->windowSystem.setActiveWindow(editorWindow());
    }

    void aFieldIsReadSilently()
    {
        m_desktop->accessibility.setElement(field(u"  请发一下报价 "_s));
        m_desktop->clipboard.putForeignContents(richContents());
        const quint64 before = m_desktop->clipboard.changeCount();
        const auto selection = capture();
        QCOMPARE(selection.text, u"  请发一下报价 "_s);
        QCOMPARE(selection.screenRect, QRectF(100, 200, 50, 18));
        QCOMPARE(selection.focusedEditable, true);
        QCOMPARE(selection.diag->app, u"editor"_s);
        QCOMPARE(selection.diag->editable, u"true"_s);
        QCOMPARE(selection.window, editorWindow());
        QVERIFY(m_desktop->keySynthesizer.presses().empty());
        QCOMPARE(m_desktop->clipboard.changeCount(), before);
        QCOMPARE(m_desktop->primarySelection.reads(), 0);
    }

    void primaryCountsWhereNothingElseIsKnown_data()
    {
        QTest::addColumn<bool>("known");
        QTest::addColumn<bool>("stale");
        QTest::addColumn<qint64>("owner");
        QTest::addColumn<QString>("text");
        QTest::newRow("fresh, of the front program") << false << false << editorProcess << u"选"_s;
        QTest::newRow("stale") << false << true << editorProcess << u""_s;
        QTest::newRow("of another program") << false << false << editorProcess + 1 << u""_s;
        QTest::newRow("of nobody known") << false << false << qint64(0) << u""_s;
        // Accessibility says that nothing is selected, and it knows better.
        QTest::newRow("contradicted") << true << false << editorProcess << u""_s;
    }

    void primaryCountsWhereNothingElseIsKnown()
    {
        QFETCH(bool, known);
        QFETCH(bool, stale);
        QFETCH(qint64, owner);
        if (known)
            m_desktop->accessibility.setElement(field(u""_s));
        m_desktop->primarySelection.setSelection(platform::PrimarySelection{u"选"_s, owner, stale});
        const auto selection = capture();
        QTEST(selection.text, "text");
        QCOMPARE(selection.focusedEditable.has_value(), known);
    }

    // Chromium offers a selected password there, and refuses to copy it.
    void primaryIsNotTakenWhereItMayBeAPassword()
    {
        m_desktop->windowSystem.setActiveWindow(
            platform::ForeignWindow{78, editorProcess, u"Chromium"_s, u"chromium"_s});
        m_desktop->primarySelection.setSelection(
            platform::PrimarySelection{u"secret"_s, editorProcess, false});
        QCOMPARE(capture().text, QString());
        copiesOnRequest(u"copied"_s);
        QCOMPARE(capture().text, u"copied"_s);
    }

    void aSimulatedCopyGivesTheClipboardBack()
    {
        m_desktop->clipboard.putForeignContents(richContents());
        copiesOnRequest(u" copied "_s);
        const auto selection = capture();
        QCOMPARE(selection.text, u" copied "_s);
        QVERIFY(!selection.screenRect && !selection.focusedEditable && !selection.diag);
        QCOMPARE(m_desktop->clipboard.contents(), richContents());
    }

    void aCopyOfBlanksCountsAsNothing()
    {
        copiesOnRequest(u" \n"_s);
        QCOMPARE(capture().text, QString());
        QVERIFY(m_desktop->clipboard.contents().items.empty()); // empty as before
    }

    void aCopyWithoutTextGivesTheClipboardBack()
    {
        m_desktop->clipboard.putForeignContents(richContents());
        m_desktop->keySynthesizer.setTarget([this](const auto &) {
            m_desktop->clipboard.putForeignContents({{{"image/png", "image/png", 8, "png"}}});
        });
        QCOMPARE(capture().text, QString());
        QCOMPARE(m_desktop->clipboard.contents(), richContents());
    }

    void aProgramThatIgnoresTheCopyKeepsItsClipboard()
    {
        m_desktop->clipboard.putForeignContents(richContents());
        const quint64 before = m_desktop->clipboard.changeCount();
        QCOMPARE(capture().text, QString());
        QCOMPARE(m_desktop->keySynthesizer.presses().size(), 1u);
        QCOMPARE(m_desktop->clipboard.changeCount(), before);
    }

    void aClipboardThatCannotBeKeptIsNotTouched()
    {
        m_desktop->clipboard.putForeignContents(richContents(), MemoryClipboard::Owner::Silent);
        copiesOnRequest(u"copied"_s);
        QCOMPARE(capture().text, QString());
        QVERIFY(m_desktop->keySynthesizer.presses().empty());
    }

    void aProgramThatHangsIsNotAskedToCopy()
    {
        m_desktop->windowSystem.setResponding(false);
        copiesOnRequest(u"copied"_s);
        QCOMPARE(capture().text, QString());
        QVERIFY(m_desktop->keySynthesizer.presses().empty());
    }

    void aTerminalIsSentNoKeyThatCouldHarm()
    {
        for (const QString &name : {u"XTerm"_s, u"Alacritty"_s}) {
            m_desktop->windowSystem.setActiveWindow(editorWindow(name));
            QCOMPARE(capture().text, QString());
            QVERIFY(m_desktop->keySynthesizer.presses().empty());
        }
    }

    void ourOwnWindowIsSentNoKey()
    {
        auto own = editorWindow();
        own.processId = QCoreApplication::applicationPid();
        m_desktop->windowSystem.setActiveWindow(own);
        m_desktop->accessibility.setElement(field(u"behind"_s));
        auto selection = capture();
        QCOMPARE(selection.text, u"behind"_s); // of the program behind
        QVERIFY(selection.overOwnWindow && !selection.window);

        m_desktop->accessibility.setElement(std::nullopt);
        m_desktop->primarySelection.setSelection(
            platform::PrimarySelection{u"x"_s, own.processId, false});
        QCOMPARE(capture().text, QString());
        QVERIFY(m_desktop->keySynthesizer.presses().empty());
    }

    void aProgramThatShowsMoreOnRequestIsAsked()
    {
        FocusedElement vague;
        vague.processId = editorProcess;
        m_desktop->accessibility.setElement(vague);
        m_desktop->accessibility.setExposure(
            true, [this] { m_desktop->accessibility.setElement(field(u"shown"_s)); });
        const auto selection = capture();
        QCOMPARE(selection.text, u"shown"_s);
        QCOMPARE(selection.diag->manualAX, true);
    }

    void aStuckProgramDoesNotHoldTheTrigger()
    {
        m_desktop->accessibility.setLatency(10s);
        m_desktop->primarySelection.setLatency(10s);
        copiesOnRequest(u"copied"_s);
        for (const auto owner : {MemoryClipboard::Owner::Silent, MemoryClipboard::Owner::Prompt}) {
            m_desktop->clipboard.putForeignContents(richContents(), owner);
            QElapsedTimer elapsed;
            elapsed.start();
            QCOMPARE(capture().text, QString());
            QVERIFY2(elapsed.elapsed() < 1100, qPrintable(QString::number(elapsed.elapsed())));
            // Too little time is left to see a copy through.
            QVERIFY(m_desktop->keySynthesizer.presses().empty());
        }
    }

private:
    std::unique_ptr<memory::MemoryDesktop> m_desktop;

    platform::Selection capture() { return SelectionService(m_desktop->services()).capture(); }
    // The front program copies this at the copy gesture.
    void copiesOnRequest(const QString &text)
    {
        m_desktop->keySynthesizer.setTarget([this, text](const platform::KeyChord &chord) {
            if (chord == platform::KeyChord{Qt::Key_Insert, Qt::ControlModifier})
                m_desktop->clipboard.putForeignText(text);
        });
    }
};

QTEST_GUILESS_MAIN(TestSelectionService)
#include "tst_selection_service.moc"
