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

Q_DECLARE_METATYPE(nivora::platform::FocusedElement)

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
    void init();

    void aFieldIsReadSilently();
    void editabilityIsTheFirstRuleThatMatches_data();
    void editabilityIsTheFirstRuleThatMatches();
    void aPlaceIsOnlyGivenWhereItHelps_data();
    void aPlaceIsOnlyGivenWhereItHelps();
    void primaryCountsWhereNothingElseIsKnown_data();
    void primaryCountsWhereNothingElseIsKnown();
    void primaryIsNotTakenWhereItMayBeAPassword();
    void aSimulatedCopyGivesTheClipboardBack();
    void aCopyOfBlanksCountsAsNothing();
    void aCopyWithoutTextGivesTheClipboardBack();
    void aProgramThatIgnoresTheCopyKeepsItsClipboard();
    void aClipboardThatCannotBeKeptIsNotTouched();
    void aProgramThatHangsIsNotAskedToCopy();
    void aTerminalIsSentNoKeyThatCouldHarm();
    void aTerminalTakesTextAtItsPromptAlone_data();
    void aTerminalTakesTextAtItsPromptAlone();
    void ourOwnWindowIsSentNoKey();
    void aProgramThatShowsMoreOnRequestIsAsked();
    void aStuckProgramDoesNotHoldTheTrigger();
    void focusReportsGoThroughJson();

private:
    std::unique_ptr<memory::MemoryDesktop> m_desktop;

    platform::Selection capture() { return SelectionService(m_desktop->services()).capture(); }
    // The front program copies this at the copy gesture.
    void copiesOnRequest(const QString &text);
};

void TestSelectionService::init()
{
    m_desktop = std::make_unique<memory::MemoryDesktop>();
    m_desktop->windowSystem.setActiveWindow(editorWindow());
}

void TestSelectionService::copiesOnRequest(const QString &text)
{
    m_desktop->keySynthesizer.setTarget([this, text](const platform::KeyChord &chord) {
        if (chord == platform::KeyChord{Qt::Key_Insert, Qt::ControlModifier})
            m_desktop->clipboard.putForeignText(text);
    });
}

void TestSelectionService::aFieldIsReadSilently()
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

void TestSelectionService::editabilityIsTheFirstRuleThatMatches_data()
{
    QTest::addColumn<FocusedElement>("element");
    QTest::addColumn<std::optional<bool>>("editable");
    const auto row = [](const char *name, auto change, std::optional<bool> expected) {
        FocusedElement element;
        change(element);
        QTest::newRow(name) << element << expected;
    };
    row(
        "text field", [](auto &e) { e.role = u"AXTextField"_s; }, true);
    row(
        "combo box", [](auto &e) { e.role = u"AXComboBox"_s; }, true);
    row(
        "password", [](auto &e) { e.subrole = u"AXSecureTextField"_s; }, true);
    row(
        "settable value", [](auto &e) { e.valueSettable = true; }, true);
    row(
        "settable selection", [](auto &e) { e.selectedTextSettable = true; }, true);
    row(
        "a range only", [](auto &e) { e.selectedTextRange.emplace(); }, false);
    row(
        "a count only", [](auto &e) { e.characterCount = 0; }, false);
    row(
        "a line only", [](auto &e) { e.insertionPointLine = 0; }, false);
    row(
        "nothing", [](auto &e) { e.role = u"AXButton"_s; }, std::nullopt);
}

void TestSelectionService::editabilityIsTheFirstRuleThatMatches()
{
    QFETCH(FocusedElement, element);
    QTEST(SelectionService::editability(element), "editable");
}

void TestSelectionService::aPlaceIsOnlyGivenWhereItHelps_data()
{
    QTest::addColumn<bool>("editable");
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QRectF>("frame");
    QTest::addColumn<std::optional<QRectF>>("place");
    const QRectF text(1, 2, 30, 18);
    const QRectF small(5, 6, 300, 40);
    const std::optional<QRectF> none;
    QTest::newRow("the text itself") << true << text << small << std::optional(text);
    QTest::newRow("a bare insertion point")
        << true << QRectF(1, 2, 0, 18) << small << std::optional(QRectF(1, 2, 0, 18));
    QTest::newRow("an empty rectangle gives way")
        << true << QRectF(1, 2, 0, 0) << small << std::optional(small);
    QTest::newRow("tall text gives way")
        << true << QRectF(0, 0, 9, 121) << small << std::optional(small);
    QTest::newRow("text as tall as allowed")
        << true << QRectF(0, 0, 9, 120) << small << std::optional(QRectF(0, 0, 9, 120));
    QTest::newRow("a container is no place") << true << QRectF() << QRectF(0, 0, 300, 401) << none;
    QTest::newRow("a field without width") << true << QRectF() << QRectF(0, 0, 0, 20) << none;
    QTest::newRow("a frame stands in for fields only") << false << QRectF() << small << none;
}

void TestSelectionService::aPlaceIsOnlyGivenWhereItHelps()
{
    QFETCH(bool, editable);
    QFETCH(QRectF, bounds);
    QFETCH(QRectF, frame);
    FocusedElement element = field(u"text"_s);
    element.selectedTextBounds = bounds;
    element.frame = frame;
    if (!editable) {
        element.role = u"AXStaticText"_s;
        element.valueSettable = false;
    }
    m_desktop->accessibility.setElement(element);
    const auto selection = capture();
    QCOMPARE(selection.focusedEditable, editable);
    QTEST(selection.screenRect, "place");
}

void TestSelectionService::primaryCountsWhereNothingElseIsKnown_data()
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

void TestSelectionService::primaryCountsWhereNothingElseIsKnown()
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
void TestSelectionService::primaryIsNotTakenWhereItMayBeAPassword()
{
    m_desktop->windowSystem.setActiveWindow(
        platform::ForeignWindow{78, editorProcess, u"Chromium"_s, u"chromium"_s});
    m_desktop->primarySelection.setSelection(
        platform::PrimarySelection{u"secret"_s, editorProcess, false});
    QCOMPARE(capture().text, QString());
    copiesOnRequest(u"copied"_s);
    QCOMPARE(capture().text, u"copied"_s);
}

void TestSelectionService::aSimulatedCopyGivesTheClipboardBack()
{
    m_desktop->clipboard.putForeignContents(richContents());
    copiesOnRequest(u" copied "_s);
    const auto selection = capture();
    QCOMPARE(selection.text, u" copied "_s);
    QVERIFY(!selection.screenRect && !selection.focusedEditable && !selection.diag);
    QCOMPARE(m_desktop->clipboard.contents(), richContents());
}

void TestSelectionService::aCopyOfBlanksCountsAsNothing()
{
    copiesOnRequest(u" \n"_s);
    QCOMPARE(capture().text, QString());
    QVERIFY(m_desktop->clipboard.contents().items.empty()); // empty as before
}

void TestSelectionService::aCopyWithoutTextGivesTheClipboardBack()
{
    m_desktop->clipboard.putForeignContents(richContents());
    m_desktop->keySynthesizer.setTarget([this](const auto &) {
        m_desktop->clipboard.putForeignContents({{{"image/png", "image/png", 8, "png"}}});
    });
    QCOMPARE(capture().text, QString());
    QCOMPARE(m_desktop->clipboard.contents(), richContents());
}

void TestSelectionService::aProgramThatIgnoresTheCopyKeepsItsClipboard()
{
    m_desktop->clipboard.putForeignContents(richContents());
    const quint64 before = m_desktop->clipboard.changeCount();
    QCOMPARE(capture().text, QString());
    QCOMPARE(m_desktop->keySynthesizer.presses().size(), 1u);
    QCOMPARE(m_desktop->clipboard.changeCount(), before);
}

void TestSelectionService::aClipboardThatCannotBeKeptIsNotTouched()
{
    m_desktop->clipboard.putForeignContents(richContents(), MemoryClipboard::Owner::Silent);
    copiesOnRequest(u"copied"_s);
    QCOMPARE(capture().text, QString());
    QVERIFY(m_desktop->keySynthesizer.presses().empty());
}

void TestSelectionService::aProgramThatHangsIsNotAskedToCopy()
{
    m_desktop->windowSystem.setResponding(false);
    copiesOnRequest(u"copied"_s);
    QCOMPARE(capture().text, QString());
    QVERIFY(m_desktop->keySynthesizer.presses().empty());
}

void TestSelectionService::aTerminalIsSentNoKeyThatCouldHarm()
{
    for (const QString &name : {u"XTerm"_s, u"Alacritty"_s}) {
        m_desktop->windowSystem.setActiveWindow(editorWindow(name));
        QCOMPARE(capture().text, QString());
        QVERIFY(m_desktop->keySynthesizer.presses().empty());
    }
}

void TestSelectionService::aTerminalTakesTextAtItsPromptAlone_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<bool>("editable");
    QTest::newRow("a selection cannot be replaced") << u"Xfce4-terminal"_s << u"text"_s << false;
    QTest::newRow("nothing selected") << u"Xfce4-terminal"_s << u""_s << true;
    QTest::newRow("blanks count as nothing") << u"Xfce4-terminal"_s << u"  "_s << true;
    QTest::newRow("no keys to paste with") << u"XTerm"_s << u""_s << false;
}

void TestSelectionService::aTerminalTakesTextAtItsPromptAlone()
{
    QFETCH(QString, className);
    QFETCH(QString, selected);
    m_desktop->windowSystem.setActiveWindow(editorWindow(className));
    m_desktop->accessibility.setElement(field(selected));
    QFETCH(bool, editable);
    QCOMPARE(capture().focusedEditable, editable);
}

void TestSelectionService::ourOwnWindowIsSentNoKey()
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

void TestSelectionService::aProgramThatShowsMoreOnRequestIsAsked()
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

void TestSelectionService::aStuckProgramDoesNotHoldTheTrigger()
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

void TestSelectionService::focusReportsGoThroughJson()
{
    const platform::FocusDiag diag{u"ed\"it"_s, u"AXTextArea"_s, {},       u"nil"_s,
                                   true,        {u"AXValue"_s},  u"read"_s};
    const QByteArray json = diag.toJson();
    QCOMPARE(json, R"({"app":"ed\"it","role":"AXTextArea","subrole":"","editable":"nil",)"
                   R"("manualAX":true,"attrs":["AXValue"],"scene":"read"})"_ba);
    QCOMPARE(platform::FocusDiag::fromJson(json), diag);
    for (const char *key : {"app", "role", "subrole", "editable", "manualAX", "attrs", "scene"}) {
        QJsonObject object = QJsonDocument::fromJson(json).object();
        object.remove(QLatin1StringView(key));
        QVERIFY2(!platform::FocusDiag::fromJson(QJsonDocument(object).toJson()), key);
    }
}

QTEST_GUILESS_MAIN(TestSelectionService)
#include "tst_selection_service.moc"
