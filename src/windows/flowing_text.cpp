#include "flowing_text.h"

#include "flowing_text_accessible.h"
#include "focus_ring.h"
#include "open_menu.h"
#include "windows/theme.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>

using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr int frameMilliseconds = 16;
// What the layout of a long text may take before others have their turn.
constexpr auto layoutShare = 8ms;

constexpr qreal annotationOpacity = 0.45;

} // namespace

FlowingText::FlowingText(Weight weight, QWidget *parent)
    : QWidget(parent)
    , m_weight(weight)
{
    makeFlowingTextsAccessible(); // before anybody asks
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::IBeamCursor);
    m_layoutTimer.setSingleShot(true);
    m_layoutTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_layoutTimer, &QTimer::timeout, this, &FlowingText::layOut);
}

void FlowingText::setTextFont(const QFont &font)
{
    setFont(font);
    m_flow.setFont(font);
    layOut();
}

void FlowingText::replaceText(const QString &text)
{
    if (text.isEmpty() && m_flow.text().isEmpty())
        return;
    if (QAccessible::isActive() && m_told > 0) {
        QAccessibleTextRemoveEvent gone(this, 0, m_flow.text().first(m_told));
        QAccessible::updateAccessibility(&gone);
    }
    m_told = 0;
    m_anchor = m_cursor = 0;
    m_flow.clear();
    m_flow.append(text);
    layOut();
}

void FlowingText::appendText(const QString &piece)
{
    m_flow.append(piece);
    if (m_layoutTimer.isActive())
        return;
    // At once if the last frame is long gone, else with the next one.
    const qint64 rest = m_sinceLayout.isValid() ? frameMilliseconds - m_sinceLayout.elapsed() : 0;
    m_layoutTimer.start(int(std::max<qint64>(rest, 0)));
}

void FlowingText::layOut()
{
    m_sinceLayout.start();
    const int before = m_flow.height();
    if (!m_flow.layOut(QDeadlineTimer(layoutShare)))
        m_layoutTimer.start(0);
    else
        m_layoutTimer.stop();
    const int height = m_flow.height();
    // What was there stays as it was, but for the last line.
    update(height < before ? rect() : rect().adjusted(0, before - 3 * font().pixelSize(), 0, 0));
    if (QAccessible::isActive() && m_told < m_flow.text().size()) {
        QAccessibleTextInsertEvent grown(this, m_told, m_flow.text().sliced(m_told));
        QAccessible::updateAccessibility(&grown);
        m_told = int(m_flow.text().size());
    }
    if (std::exchange(m_reportedHeight, height) != height)
        Q_EMIT textHeightChanged();
}

int FlowingText::heightForWidth(int) const
{
    return m_flow.height();
}

void FlowingText::resizeEvent(QResizeEvent *event)
{
    if (event->size().width() == event->oldSize().width())
        return;
    m_flow.setWidth(event->size().width());
    layOut();
}

void FlowingText::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    QColor ink = palette().color(QPalette::WindowText);
    if (m_weight == Weight::Annotation)
        ink.setAlphaF(annotationOpacity);
    m_flow.draw(painter, event->rect(), ink, selection(), palette());
}

TextFlow::Range FlowingText::selection() const
{
    return {std::min(m_anchor, m_cursor), std::max(m_anchor, m_cursor)};
}

void FlowingText::select(int anchor, int cursor)
{
    const auto size = int(m_flow.text().size());
    anchor = std::clamp(anchor, 0, size);
    cursor = std::clamp(cursor, 0, size);
    if (anchor == m_anchor && cursor == m_cursor)
        return;
    m_anchor = anchor;
    m_cursor = cursor;
    update();
    if (QAccessible::isActive()) {
        const auto [first, last] = selection();
        QAccessibleTextSelectionEvent changed(this, first, last);
        changed.setCursorPosition(cursor);
        QAccessible::updateAccessibility(&changed);
    }
}

QString FlowingText::selectedText() const
{
    const auto [first, last] = selection();
    return m_flow.text().sliced(first, last - first);
}

void FlowingText::copy() const
{
    if (m_anchor != m_cursor)
        QGuiApplication::clipboard()->setText(selectedText());
}

void FlowingText::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int place = m_flow.positionAt(event->position());
    select(event->modifiers().testFlag(Qt::ShiftModifier) ? m_anchor : place, place);
    m_selecting = true;
}

void FlowingText::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_selecting)
        return;
    select(m_anchor, m_flow.positionAt(event->position()));
    Q_EMIT cursorShown(m_flow.caretAt(m_cursor).toAlignedRect());
}

void FlowingText::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !std::exchange(m_selecting, false))
        return;
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (m_anchor != m_cursor && clipboard->supportsSelection())
        clipboard->setText(selectedText(), QClipboard::Selection);
}

void FlowingText::mouseDoubleClickEvent(QMouseEvent *event)
{
    const auto [first, last] = m_flow.wordAt(m_flow.positionAt(event->position()));
    select(first, last);
    m_selecting = true; // the release hands it out
}

// Where a key that extends the selection takes its end; absent for other keys.
std::optional<int> FlowingText::cursorAfter(const QKeyEvent &event) const
{
    const QRectF caret = m_flow.caretAt(m_cursor);
    if (event.matches(QKeySequence::SelectNextChar))
        return m_flow.next(m_cursor);
    if (event.matches(QKeySequence::SelectPreviousChar))
        return m_flow.previous(m_cursor);
    if (event.matches(QKeySequence::SelectNextWord))
        return m_flow.wordAt(m_flow.next(m_cursor)).last;
    if (event.matches(QKeySequence::SelectPreviousWord))
        return m_flow.wordAt(m_flow.previous(m_cursor)).first;
    if (event.matches(QKeySequence::SelectNextLine))
        return m_flow.positionAt(caret.center() + QPointF(0, 1.5 * font().pixelSize()));
    if (event.matches(QKeySequence::SelectPreviousLine))
        return m_flow.positionAt(caret.center() - QPointF(0, 1.5 * font().pixelSize()));
    if (event.matches(QKeySequence::SelectStartOfLine))
        return m_flow.positionAt({0, caret.center().y()});
    if (event.matches(QKeySequence::SelectEndOfLine))
        return m_flow.positionAt({qreal(width()), caret.center().y()});
    if (event.matches(QKeySequence::SelectStartOfDocument))
        return 0;
    if (event.matches(QKeySequence::SelectEndOfDocument))
        return int(m_flow.text().size());
    return std::nullopt;
}

void FlowingText::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        select(0, int(m_flow.text().size()));
    } else if (const auto cursor = cursorAfter(*event)) {
        select(m_anchor, *cursor);
        Q_EMIT cursorShown(m_flow.caretAt(m_cursor).toAlignedRect());
    } else {
        QWidget::keyPressEvent(event);
    }
}

void FlowingText::contextMenuEvent(QContextMenuEvent *event)
{
    auto menu = std::make_unique<QMenu>();
    QAction *copyAction = menu->addAction(tr("复制"), this, &FlowingText::copy);
    copyAction->setEnabled(m_anchor != m_cursor);
    menu->addAction(tr("全选"), this, [this] { select(0, int(m_flow.text().size())); });
    openMenu(std::move(menu), *this, event->globalPos());
}

void FlowingText::focusInEvent(QFocusEvent *event)
{
    m_ring = wantsRing(*event, m_ring);
    Q_EMIT ringChanged();
}

void FlowingText::focusOutEvent(QFocusEvent *)
{
    Q_EMIT ringChanged();
}

} // namespace nivora
