#include "history_list.h"

#include "focus_ring.h"
#include "history_model.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int captionPixels = 11;
constexpr QSize symbolSize(14, 14);
constexpr qreal radius = 5;
constexpr int ringInset = 3;
constexpr int dateGap = 8;

// Between two looks at what else there is to do.
constexpr auto settlingSlice = 5ms;

} // namespace

class HistoryList::Delegate final : public QStyledItemDelegate
{
public:
    explicit Delegate(HistoryList &list)
        : QStyledItemDelegate(&list)
        , m_list(list)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const override
    {
        const int width = m_list.viewport()->width();
        return {width, m_list.m_rows.height(m_list.m_model.entry(index.row()), width)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const HistoryRow &row =
            m_list.m_rows.row(m_list.m_model.entry(index.row()), m_list.viewport()->width());
        const QPalette &palette = option.palette;
        painter->save();
        painter->translate(option.rect.topLeft());
        const QRect header = row.header();
        painter->setPen(hairline(palette));
        const qreal bottom = option.rect.height() - 0.5;
        painter->drawLine(QPointF(header.left(), bottom), QPointF(header.right() + 1, bottom));
        if (m_list.hasFocus() && m_list.m_ring && m_list.currentIndex() == index)
            drawFocusRing(*painter,
                          QRectF(0, 0, option.rect.width(), option.rect.height() - 1)
                              .adjusted(ringInset, ringInset, -ringInset, -ringInset),
                          palette);
        paintHeader(*painter, row, palette, index);
        for (const HistoryText which : {HistoryText::Source, HistoryText::Translation}) {
            const QRect place = row.place(which);
            TextFlow::Range selected;
            if (m_list.m_selectedRow == index && m_list.m_selectedText == which)
                selected = {std::min(m_list.m_anchor, m_list.m_cursor),
                            std::max(m_list.m_anchor, m_list.m_cursor)};
            painter->save();
            painter->translate(place.topLeft());
            const QColor ink = which == HistoryText::Source ? secondaryText(palette)
                                                            : palette.color(QPalette::WindowText);
            row.text(which).draw(*painter, QRectF(QPointF(), place.size()), ink, selected, palette);
            painter->restore();
        }
        painter->restore();
    }

private:
    void paintHeader(QPainter &painter, const HistoryRow &row, const QPalette &palette,
                     const QModelIndex &index) const
    {
        const QRect button = row.copyButton();
        if (m_list.m_hovered == index || m_list.m_pressed == index) {
            QColor tint = hoverTint(palette);
            if (m_list.m_pressed == index)
                tint.setAlphaF(std::min(1.0F, tint.alphaF() * 1.6F));
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(tint);
            painter.drawRoundedRect(button, radius, radius);
        }
        QRect symbol(QPoint(), symbolSize);
        symbol.moveCenter(button.center());
        painter.drawPixmap(symbol.topLeft(), symbolPixmap(u"doc.on.doc"_s, symbolSize,
                                                          painter.device()->devicePixelRatioF(),
                                                          secondaryText(palette)));

        painter.setFont(textFont(captionPixels));
        painter.setPen(secondaryText(palette));
        QRect line = row.header();
        line.setRight(button.left() - dateGap);
        painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, row.date);
        const QFontMetrics metrics = painter.fontMetrics();
        line.setRight(line.right() - metrics.horizontalAdvance(row.date) - dateGap);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(row.direction, Qt::ElideRight, line.width()));
    }

    HistoryList &m_list;
};

HistoryList::HistoryList(HistoryModel &model, QWidget *parent)
    : QListView(parent)
    , m_model(model)
{
    setModel(&model);
    setItemDelegate(new Delegate(*this));
    setFrameShape(QFrame::NoFrame);
    setResizeMode(QListView::Adjust);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A bar that comes and goes would change the width, and with it every height.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(tr("翻译历史"));
}

// A new width changes the height of every row, and to lay out some thousand rows takes
// a second: those that do not show keep the height of before until their turn comes.
void HistoryList::doItemsLayout()
{
    place();
    settleVisible();
    settleRest();
}

void HistoryList::place()
{
    const bool isCurrentShown = viewport()->rect().intersects(visualRect(currentIndex()));
    const QModelIndex fixed = isCurrentShown ? currentIndex() : indexAt(QPoint(0, 0));
    const int before = visualRect(fixed).top();
    QListView::doItemsLayout();
    // Above the first row there is nothing that could move it.
    if (fixed.row() > 0)
        verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(fixed).top() -
                                      before);
}

void HistoryList::settleVisible()
{
    const int width = viewport()->width();
    // Rows that turn out lower than they were make room for others.
    for (bool isNew = true; isNew;) {
        isNew = false;
        for (QModelIndex index = indexAt(QPoint(0, 0));
             index.isValid() && visualRect(index).top() < viewport()->height();
             index = index.siblingAtRow(index.row() + 1)) {
            const HistoryEntry &entry = m_model.entry(index.row());
            if (m_rows.isSettled(entry, width))
                continue;
            m_rows.row(entry, width);
            isNew = true;
        }
        if (isNew)
            place();
    }
}

void HistoryList::settleRest()
{
    m_settling = platform::delay(0ms, [this] {
        const QDeadlineTimer slice(settlingSlice);
        const int width = viewport()->width();
        for (int row = 0; row < m_model.rowCount(); ++row) {
            const HistoryEntry &entry = m_model.entry(row);
            if (m_rows.isSettled(entry, width))
                continue;
            if (slice.hasExpired())
                return settleRest();
            m_rows.row(entry, width);
            m_unplaced = true;
        }
        // Once for all: it paints everything anew.
        if (std::exchange(m_unplaced, false))
            place();
    });
}

void HistoryList::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const int width = viewport()->width();
    if (index.isValid() && !m_rows.isSettled(m_model.entry(index.row()), width)) {
        m_rows.row(m_model.entry(index.row()), width);
        place();
    }
    QListView::scrollTo(index, hint);
}

void HistoryList::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        doItemsLayout();
}

HistoryList::Spot HistoryList::spotAt(const QPoint &place)
{
    Spot spot{.row = indexAt(place)};
    if (!spot.row.isValid())
        return spot;
    const HistoryRow &row = m_rows.row(m_model.entry(spot.row.row()), viewport()->width());
    const QPoint inRow = place - visualRect(spot.row).topLeft();
    if (row.copyButton().contains(inRow))
        spot.kind = Spot::Kind::CopyButton;
    for (const HistoryText which : {HistoryText::Source, HistoryText::Translation}) {
        if (row.place(which).contains(inRow)) {
            spot.kind = Spot::Kind::Text;
            spot.which = which;
            spot.position = positionIn(spot.row, which, place);
        }
    }
    return spot;
}

int HistoryList::positionIn(const QModelIndex &index, HistoryText which, const QPoint &place)
{
    const HistoryRow &row = m_rows.row(m_model.entry(index.row()), viewport()->width());
    return row.text(which).positionAt(place - visualRect(index).topLeft() -
                                      row.place(which).topLeft());
}

// What lies below the pointer.
void HistoryList::point(const Spot &spot)
{
    const bool onButton = spot.kind == Spot::Kind::CopyButton;
    if (const QPersistentModelIndex now = onButton ? spot.row : QModelIndex(); m_hovered != now) {
        m_hovered = now;
        viewport()->update();
    }
    viewport()->setCursor(spot.kind == Spot::Kind::Text ? Qt::IBeamCursor : Qt::ArrowCursor);
}

void HistoryList::select(const QModelIndex &row, HistoryText which, int anchor, int cursor)
{
    m_selectedRow = row;
    m_selectedText = which;
    m_anchor = anchor;
    m_cursor = cursor;
    viewport()->update();
}

QString HistoryList::selectedText()
{
    if (!m_selectedRow.isValid() || m_anchor == m_cursor)
        return {};
    const QString shown = m_rows.row(m_model.entry(m_selectedRow.row()), viewport()->width())
                              .text(m_selectedText)
                              .text();
    const int first = std::min(m_anchor, m_cursor);
    return shown.mid(first, std::max(m_anchor, m_cursor) - first);
}

void HistoryList::copyFrom(const QModelIndex &row)
{
    if (row.isValid())
        Q_EMIT copyRequested(m_model.entry(row.row()).translation);
}

void HistoryList::mousePressEvent(QMouseEvent *event)
{
    const Spot spot = spotAt(event->pos());
    m_ring = false;
    if (spot.row.isValid())
        setCurrentIndex(spot.row);
    if (event->button() != Qt::LeftButton)
        return;
    if (spot.kind == Spot::Kind::CopyButton) {
        m_pressed = spot.row;
        viewport()->update();
    } else if (spot.kind == Spot::Kind::Text) {
        const bool extends = event->modifiers().testFlag(Qt::ShiftModifier) &&
                             m_selectedRow == spot.row && m_selectedText == spot.which;
        select(spot.row, spot.which, extends ? m_anchor : spot.position, spot.position);
        m_selecting = true;
    } else {
        select({}, HistoryText::Source, 0, 0);
    }
}

void HistoryList::mouseMoveEvent(QMouseEvent *event)
{
    if (m_selecting && m_selectedRow.isValid())
        return select(m_selectedRow, m_selectedText, m_anchor,
                      positionIn(m_selectedRow, m_selectedText, event->pos()));
    point(spotAt(event->pos()));
}

void HistoryList::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (m_pressed.isValid()) {
        const Spot spot = spotAt(event->pos());
        if (spot.kind == Spot::Kind::CopyButton && m_pressed == spot.row)
            copyFrom(spot.row);
        m_pressed = QModelIndex();
        viewport()->update();
    }
    if (!std::exchange(m_selecting, false))
        return;
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (const QString text = selectedText(); !text.isEmpty() && clipboard->supportsSelection())
        clipboard->setText(text, QClipboard::Selection);
}

void HistoryList::mouseDoubleClickEvent(QMouseEvent *event)
{
    const Spot spot = spotAt(event->pos());
    if (event->button() != Qt::LeftButton || spot.kind != Spot::Kind::Text)
        return mousePressEvent(event);
    const HistoryRow &row = m_rows.row(m_model.entry(spot.row.row()), viewport()->width());
    const auto [first, last] = row.text(spot.which).wordAt(spot.position);
    select(spot.row, spot.which, first, last);
    m_selecting = true; // the release hands it out
}

void HistoryList::leaveEvent(QEvent *event)
{
    point({});
    QListView::leaveEvent(event);
}

bool HistoryList::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::Paint)
        settleVisible(); // what was scrolled to
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        if (spotAt(help->pos()).kind == Spot::Kind::CopyButton)
            QToolTip::showText(help->globalPos(), tr("复制译文"), viewport());
        else
            QToolTip::hideText();
        return true;
    }
    return QListView::viewportEvent(event);
}

void HistoryList::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byPointer = event->reason() == QContextMenuEvent::Mouse;
    const QModelIndex row = byPointer ? indexAt(event->pos()) : currentIndex();
    if (!row.isValid())
        return;
    const HistoryEntry entry = m_model.entry(row.row());
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("复制译文"), this,
                    [this, entry] { Q_EMIT copyRequested(entry.translation); });
    menu->addAction(tr("复制原文"), this,
                    [this, entry] { Q_EMIT copyRequested(entry.sourceText); });
    menu->addSeparator();
    menu->addAction(tr("删除"), this, [this, entry] { Q_EMIT deleteRequested(entry.id); });
    const QRect place = visualRect(row).intersected(viewport()->rect());
    menu->popup(byPointer ? event->globalPos() : viewport()->mapToGlobal(place.center()));
}

void HistoryList::keyPressEvent(QKeyEvent *event)
{
    m_ring = true;
    viewport()->update();
    if (event->matches(QKeySequence::Copy)) {
        const QString selected = selectedText();
        selected.isEmpty() ? copyFrom(currentIndex()) : Q_EMIT copyRequested(selected);
    } else if (event->matches(QKeySequence::Delete) && currentIndex().isValid()) {
        Q_EMIT deleteRequested(m_model.entry(currentIndex().row()).id);
    } else if (event->keyCombination() == (Qt::SHIFT | Qt::Key_F10)) {
        // For keyboards without a menu key, which is all that the toolkit knows.
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        contextMenuEvent(&menu);
    } else {
        QListView::keyPressEvent(event);
    }
}

void HistoryList::focusInEvent(QFocusEvent *event)
{
    m_ring = wantsRing(*event, m_ring);
    if (m_ring && !currentIndex().isValid())
        setCurrentIndex(m_model.index(0));
    QListView::focusInEvent(event);
}

} // namespace nivora
