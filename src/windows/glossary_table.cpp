#include "glossary_table.h"

#include "focus_ring.h"
#include "glossary_delegate.h"
#include "glossary_model.h"
#include "windows/theme.h"

#include "stores/glossary_exchange.h"
#include "stores/glossary_store.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSortFilterProxyModel>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int notePixels = 12; // logical pixels

} // namespace

GlossaryTable::GlossaryTable(GlossaryStore &store, QWidget *parent)
    : QTableView(parent)
    , m_store(store)
    , m_model(new GlossaryModel(store, this))
    , m_filter(new QSortFilterProxyModel(this))
{
    m_filter->setSourceModel(m_model);
    m_filter->setFilterKeyColumn(-1);
    m_filter->setFilterCaseSensitivity(Qt::CaseInsensitive);
    // A term that is being changed stays on show.
    m_filter->setDynamicSortFilter(false);
    setModel(m_filter);
    setItemDelegate(new GlossaryDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                    QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    // Thousands of cells must not stand between the keyboard and what comes next.
    setTabKeyNavigation(false);
    setAccessibleName(tr("术语表"));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(GlossaryDelegate::rowHeight);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(0);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

// Both fields are of one width.
void GlossaryTable::resizeEvent(QResizeEvent *event)
{
    using D = GlossaryDelegate;
    const int whole = viewport()->width();
    const int field = (whole - D::rowInset - D::arrowWidth - D::binWidth) / 2;
    setColumnWidth(GlossaryModel::Chinese, D::rowInset + field);
    setColumnWidth(GlossaryModel::Japanese, whole - D::rowInset - field);
    QTableView::resizeEvent(event);
}

void GlossaryTable::setFilter(const QString &text)
{
    m_filter->setFilterFixedString(text);
}

void GlossaryTable::addTerm()
{
    m_store.add();
    const QModelIndex added =
        m_filter->mapFromSource(m_model->index(m_model->rowCount() - 1, GlossaryModel::Chinese));
    setCurrentIndex(added);
    setFocus();
    scrollTo(added);
    edit(added);
}

void GlossaryTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (m_filter->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setFont(textFont(notePixels));
    painter.setPen(secondaryText(palette()));
    const bool isEmpty = m_model->rowCount() == 0;
    painter.drawText(
        viewport()->rect().adjusted(GlossaryDelegate::rowInset, 0, -GlossaryDelegate::rowInset, 0),
        Qt::AlignCenter | Qt::TextWordWrap,
        isEmpty ? tr("还没有术语。可以逐条添加，也可以把成对的词粘贴到这里。")
                : tr("没有匹配的术语"));
    if (hasFocus())
        drawFocusRing(painter, viewport()->rect().adjusted(4, 1, -4, -1), palette());
}

QList<int> GlossaryTable::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows << m_filter->mapToSource(m_filter->index(row, 0)).row();
    }
    std::ranges::sort(rows);
    return rows;
}

void GlossaryTable::removeSelected()
{
    QSet<QUuid> ids;
    for (const int row : selectedRows())
        ids.insert(m_model->id(row));
    const int next = currentIndex().row();
    m_store.remove(ids);
    // The keyboard goes on where the terms were.
    if (const int rows = m_filter->rowCount(); rows > 0)
        setCurrentIndex(m_filter->index(std::clamp(next, 0, rows - 1), 0));
}

void GlossaryTable::copySelected() const
{
    QString text;
    for (const int row : selectedRows()) {
        const GlossaryTerm &term = m_store.terms().at(size_t(row));
        text += term.zh + u'\t' + term.ja + u'\n';
    }
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void GlossaryTable::paste()
{
    const auto terms = glossaryFromText(QGuiApplication::clipboard()->text());
    if (terms.empty())
        return;
    const int count = m_store.append(terms);
    scrollToBottom();
    Q_EMIT pasted(count);
}

void GlossaryTable::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Delete)
        removeSelected();
    else if (event->matches(QKeySequence::New) || event->key() == Qt::Key_Insert)
        addTerm();
    else if (event->matches(QKeySequence::Copy))
        copySelected();
    else if (event->matches(QKeySequence::Paste))
        paste();
    else if (isReturn && currentIndex().isValid())
        edit(currentIndex());
    else
        QTableView::keyPressEvent(event);
    Q_EMIT keyboardUsed();
}

void GlossaryTable::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        Q_EMIT keyboardUsed();
}

bool GlossaryTable::isBinAt(const QPoint &place) const
{
    const QModelIndex index = indexAt(place);
    return GlossaryDelegate::isBin(index, visualRect(index), place);
}

void GlossaryTable::mousePressEvent(QMouseEvent *event)
{
    m_pressedBin = isBinAt(event->pos()) && event->button() == Qt::LeftButton
                       ? indexAt(event->pos())
                       : QModelIndex();
    if (!m_pressedBin.isValid())
        QTableView::mousePressEvent(event);
}

void GlossaryTable::mouseReleaseEvent(QMouseEvent *event)
{
    const QModelIndex pressed = std::exchange(m_pressedBin, QModelIndex());
    if (!pressed.isValid())
        return QTableView::mouseReleaseEvent(event);
    if (isBinAt(event->pos()) && indexAt(event->pos()) == pressed)
        m_store.remove(m_model->id(m_filter->mapToSource(pressed).row()));
}

bool GlossaryTable::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto &help = static_cast<const QHelpEvent &>(*event);
        if (isBinAt(help.pos()))
            QToolTip::showText(help.globalPos(), tr("删除"), this);
        else
            QToolTip::hideText();
        return true;
    }
    return QTableView::viewportEvent(event);
}

} // namespace nivora
