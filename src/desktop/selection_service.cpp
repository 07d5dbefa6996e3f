#include "desktop/selection_service.h"

#include "desktop/application_gestures.h"
#include "event_loop_wait.h"

#include "platform/accessibility.h"
#include "platform/characters.h"
#include "platform/clipboard.h"
#include "platform/keys.h"
#include "platform/log.h"
#include "platform/primary_selection.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

using platform::FocusDiag;
using platform::FocusedElement;
using platform::ForeignWindow;
using platform::Selection;

namespace {

constexpr auto settleTime = 50ms;          // lets the trigger's own keys arrive
constexpr auto accessibilityBound = 350ms; // the interface promises 300 ms
constexpr auto exposureBound = 250ms;
constexpr auto exposureStep = 40ms;
constexpr auto clipboardBound = 300ms;
constexpr auto responseBound = 200ms;
constexpr auto copyBound = 350ms;
constexpr auto copyStep = 20ms;
// Each wait has its own bound; this one holds for all of them together, so that
// several programs that do not answer cost no more than one. What it leaves of a
// trigger's 1.2 s goes into opening the panel.
constexpr auto captureBound = 1000ms;
// A copy is only asked for while there is this much time to see it through:
// where it comes later, nobody would put the clipboard back.
constexpr auto leastCopyTime = 400ms;

// A taller selection says little about where the user looks.
constexpr double tallestSelection = 120; // device pixels
// A taller element is a container rather than a field.
constexpr double tallestField = 400; // device pixels

std::chrono::milliseconds within(std::chrono::milliseconds bound, const QDeadlineTimer &deadline)
{
    return std::min(
        bound, std::chrono::ceil<std::chrono::milliseconds>(deadline.remainingTimeAsDuration()));
}

QString describe(std::optional<bool> value, const QString &unknown = u"nil"_s)
{
    return value ? (*value ? u"true"_s : u"false"_s) : unknown;
}

QString orQuestionMark(const QString &text)
{
    return text.isEmpty() ? u"?"_s : text;
}

void logCaptured(QStringView how, const Selection &selection)
{
    qCDebug(log::selection).noquote() << u"%1: 字符=%2, 有边界=%3, focusedEditable=%4"_s.arg(
        how, QString::number(platform::characterCount(selection.text)),
        QString::number(selection.screenRect.has_value()), describe(selection.focusedEditable));
}

FocusDiag focusDiag(const FocusedElement &element, std::optional<bool> editable, bool exposed)
{
    FocusDiag diag;
    diag.app = orQuestionMark(element.applicationId);
    diag.role = element.role;
    diag.subrole = element.subrole;
    diag.editable = describe(editable);
    diag.manualAX = exposed;
    diag.attrs = element.attributes;
    return diag;
}

// What an element says of itself counts only as far as the program's keys go:
// without any that paste nothing can be put back, and a terminal puts a text at
// its prompt, wherever the selection is.
void limitToGestures(Selection &selection)
{
    if (!selection.window)
        return;
    const auto gestures = gesturesFor(*selection.window);
    const bool replaces = !selection.text.trimmed().isEmpty();
    if (!gestures.paste || (replaces && !gestures.pasteReplaces))
        selection.focusedEditable = false;
}

} // namespace

Selection SelectionService::capture() const
{
    const QDeadlineTimer deadline(captureBound, Qt::PreciseTimer);
    runEventLoop(settleTime);

    Selection selection;
    const auto front = m_services.windowSystem.activeWindow();
    // A trigger pressed over our own panel is about the program behind it: the
    // accessibility layer still knows that one's element, but no key press and
    // no other read would reach it.
    selection.overOwnWindow = front && front->processId == QCoreApplication::applicationPid();
    if (!selection.overOwnWindow)
        selection.window = front;

    const auto element =
        focusedElement(selection.window ? selection.window->processId : 0, deadline);
    if (element) {
        selection.focusedEditable = editability(*element);
        qCDebug(log::selection).noquote() << u"聚焦: app=%1 role=%2 editable=%3"_s.arg(
            orQuestionMark(element->applicationName), orQuestionMark(element->role),
            describe(selection.focusedEditable));
        selection.diag = focusDiag(*element, selection.focusedEditable,
                                   m_services.accessibility.requestExposure(element->processId));
        selection.screenRect = selectedTextBounds(*element);
        if (!selection.screenRect && selection.focusedEditable == true)
            selection.screenRect = elementFrame(*element);
        selection.text = element->selectedText.value_or(QString());
        if (!selection.text.isEmpty()) {
            limitToGestures(selection);
            logCaptured(u"AX 直读成功", selection);
            return selection;
        }
    }

    if (selection.window) {
        // Where accessibility knows the element, its answer about the selection
        // stands: what PRIMARY holds may long have been deselected.
        const bool isTold = element && element->selectedText;
        const bool mayBeSecret = !element && gesturesFor(*selection.window).primaryMayBeSecret;
        if (!isTold && !mayBeSecret) {
            if (const auto text = primaryText(*selection.window, deadline)) {
                selection.text = *text;
                limitToGestures(selection);
                logCaptured(u"PRIMARY 直读成功", selection);
                return selection;
            }
        }
        const auto text = captureViaClipboard(*selection.window, deadline);
        if (text && !text->trimmed().isEmpty()) {
            selection.text = *text;
            limitToGestures(selection);
            logCaptured(u"剪贴板降级成功", selection);
            return selection;
        }
    }

    limitToGestures(selection);
    qCDebug(log::selection).noquote() << u"未捕获到选区, 进入空输入态, 有边界=%1, 可编辑=%2"_s.arg(
        QString::number(selection.screenRect.has_value()),
        describe(selection.focusedEditable, u"未知"_s));
    return selection;
}

std::optional<FocusedElement> SelectionService::focusedElement(qint64 frontProcess,
                                                               const QDeadlineTimer &deadline) const
{
    auto element = readFocusedElement(deadline);
    if (element && editability(*element) == true)
        return element;
    if (frontProcess == 0 || !m_services.accessibility.requestExposure(frontProcess))
        return element;
    // The program has just been asked to show what it has; that takes a moment.
    const QDeadlineTimer exposed(within(exposureBound, deadline));
    while (!exposed.hasExpired()) {
        runEventLoop(exposureStep);
        element = readFocusedElement(deadline);
        if (element && editability(*element) == true)
            return element;
    }
    return readFocusedElement(deadline);
}

std::optional<FocusedElement>
SelectionService::readFocusedElement(const QDeadlineTimer &deadline) const
{
    return awaitResult<std::optional<FocusedElement>>(
               within(accessibilityBound, deadline),
               [this](auto done) {
                   return m_services.accessibility.readFocusedElement(std::move(done));
               })
        .value_or(std::nullopt);
}

std::optional<bool> SelectionService::editability(const FocusedElement &element)
{
    if (element.role == u"AXTextField" || element.role == u"AXTextArea" ||
        element.role == u"AXComboBox")
        return true;
    if (element.subrole == u"AXSecureTextField" || element.subrole == u"AXSearchField")
        return true;
    if (element.valueSettable || element.selectedTextSettable)
        return true;
    if (element.selectedTextRange || element.characterCount || element.insertionPointLine)
        return false;
    return std::nullopt;
}

std::optional<QRectF> SelectionService::selectedTextBounds(const FocusedElement &element)
{
    if (!element.selectedTextRange) {
        qCDebug(log::selection).noquote() << u"边界: 无 SelectedTextRange"_s;
        return std::nullopt;
    }
    if (!element.selectedTextBounds) {
        qCDebug(log::selection).noquote() << u"边界: BoundsForRange 失败"_s;
        return std::nullopt;
    }
    const QRectF bounds = *element.selectedTextBounds;
    // A bare insertion point has no width, and still tells the place.
    if (bounds.width() <= 0 && bounds.height() <= 0) {
        qCDebug(log::selection).noquote() << u"边界: 矩形为空"_s;
        return std::nullopt;
    }
    qCDebug(log::selection).noquote() << u"边界原始: x=%1 y=%2 w=%3 h=%4"_s.arg(qint64(bounds.x()))
                                             .arg(qint64(bounds.y()))
                                             .arg(qint64(bounds.width()))
                                             .arg(qint64(bounds.height()));
    if (bounds.height() > tallestSelection) {
        qCDebug(log::selection).noquote()
            << u"边界: 高度%1>120 视为大框, 回退鼠标"_s.arg(qint64(bounds.height()));
        return std::nullopt;
    }
    return bounds;
}

std::optional<QRectF> SelectionService::elementFrame(const FocusedElement &element)
{
    if (!element.frame) {
        qCDebug(log::selection).noquote() << u"元素 frame: 取不到 position/size"_s;
        return std::nullopt;
    }
    const QRectF frame = *element.frame;
    if (frame.width() <= 0 || frame.height() <= 0)
        return std::nullopt;
    qCDebug(log::selection).noquote() << u"元素 frame: x=%1 y=%2 w=%3 h=%4"_s.arg(qint64(frame.x()))
                                             .arg(qint64(frame.y()))
                                             .arg(qint64(frame.width()))
                                             .arg(qint64(frame.height()));
    if (frame.height() > tallestField) {
        qCDebug(log::selection).noquote()
            << u"元素 frame: 高度%1>400 视为容器, 放弃"_s.arg(qint64(frame.height()));
        return std::nullopt;
    }
    return frame;
}

std::optional<QString> SelectionService::primaryText(const ForeignWindow &window,
                                                     const QDeadlineTimer &deadline) const
{
    const auto bound = within(clipboardBound, deadline);
    const auto primary =
        awaitResult<std::optional<platform::PrimarySelection>>(bound, [&](auto done) {
            return m_services.primarySelection.read(bound, std::move(done));
        }).value_or(std::nullopt);
    if (!primary || primary->stale || primary->text.isEmpty())
        return std::nullopt;
    // Another program's selection is not what the user looks at.
    if (primary->ownerProcessId == 0 || primary->ownerProcessId != window.processId)
        return std::nullopt;
    return primary->text;
}

std::optional<QString> SelectionService::captureViaClipboard(const ForeignWindow &window,
                                                             const QDeadlineTimer &deadline) const
{
    const auto gesture = gesturesFor(window).copy;
    if (!gesture)
        return std::nullopt;
    platform::Clipboard &clipboard = m_services.clipboard;

    // Without a whole backup the user's clipboard would be lost: then not at all.
    const auto backupBound = within(clipboardBound, deadline);
    const auto backup =
        awaitResult<std::optional<platform::ClipboardContents>>(backupBound, [&](auto done) {
            return clipboard.read(backupBound, std::move(done));
        }).value_or(std::nullopt);
    if (!backup)
        return std::nullopt;
    // A program that hangs would copy when it wakes up, with nobody there to put
    // the clipboard back.
    const bool responding =
        awaitResult<bool>(responseBound, [&](auto done) {
            return m_services.windowSystem.isResponding(window.id, responseBound, std::move(done));
        }).value_or(false);
    if (!responding || deadline.remainingTimeAsDuration() < leastCopyTime ||
        !m_services.windowSystem.hasInputFocus(window.id))
        return std::nullopt;

    const quint64 before = clipboard.changeCount();
    if (!m_services.keySynthesizer.press(*gesture))
        return std::nullopt;
    const QDeadlineTimer copied(copyBound);
    while (clipboard.changeCount() == before && !copied.hasExpired())
        runEventLoop(copyStep);
    // A program that ignored the key press has left the clipboard as it was.
    if (clipboard.changeCount() == before)
        return std::nullopt;

    const auto textBound = within(clipboardBound, deadline);
    const auto text = awaitResult<std::optional<QString>>(textBound, [&](auto done) {
                          return clipboard.readText(textBound, std::move(done));
                      }).value_or(std::nullopt);
    clipboard.setContents(*backup);
    return text;
}

} // namespace nivora
