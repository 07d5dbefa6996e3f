#include "version_history_view.h"

#include "empty_state.h"
#include "release_notes_view.h"
#include "spinner.h"
#include "symbol_label.h"
#include "version_row.h"
#include "windows/theme.h"

#include "updates/version_history.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QStackedWidget>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr QSize leastSize(560, 420);
constexpr int listWidth = 160;
constexpr int listMargin = 4;
constexpr int spinnerSide = 24;
constexpr int hintPixels = 13;

// Day, date, month and year of a date as feeds write it.
constexpr int shownDate = 16;

QWidget *inTheMiddle(QWidget *child, QWidget *parent)
{
    auto *page = new QWidget(parent);
    auto *column = new QVBoxLayout(page);
    column->addWidget(child, 0, Qt::AlignCenter);
    return page;
}

} // namespace

VersionHistoryView::VersionHistoryView(VersionHistory &history, ReleaseNotes &notes)
    : m_history(history)
    , m_list(new QListWidget(this))
    , m_pane(new QStackedWidget(this))
    , m_notes(new ReleaseNotesWebView(notes, this))
    , m_waiting(inTheMiddle(new Spinner(spinnerSide, this), this))
    , m_failure(new EmptyState(u"wifi.exclamationmark"_s, tr("无法加载版本历史"), this))
{
    setMinimumSize(leastSize);
    auto *hint = new NoteLabel(hintPixels, this);
    hint->setText(tr("选择左侧版本查看更新说明"));
    m_hint = inTheMiddle(hint, this);

    m_list->setAccessibleName(tr("版本"));
    m_list->setItemDelegate(new VersionRow(m_list));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setFixedWidth(listWidth);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setMouseTracking(true);
    // The window's own colour, where the notes lie on a page of their own.
    m_list->viewport()->setAutoFillBackground(false);
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
        const auto &entries = m_history.entries();
        m_history.select(row < 0 ? std::nullopt : std::optional(entries[row].id));
    });

    for (QWidget *page :
         {static_cast<QWidget *>(m_notes), m_waiting, static_cast<QWidget *>(m_failure), m_hint})
        m_pane->addWidget(page);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1); // the divider
    auto *column = new QVBoxLayout;
    column->setContentsMargins(0, listMargin, 0, 0);
    column->addWidget(m_list);
    row->addLayout(column);
    row->addWidget(m_pane, 1);

    connect(m_notes, &ReleaseNotesWebView::linkActivated, this, &VersionHistoryView::linkActivated);
    connect(&m_history, &VersionHistory::entriesChanged, this, &VersionHistoryView::showEntries);
    connect(&m_history, &VersionHistory::selectionChanged, this,
            &VersionHistoryView::showSelection);
    connect(&m_history, &VersionHistory::stateChanged, this, &VersionHistoryView::showPane);
    showEntries();
}

void VersionHistoryView::showEntries()
{
    {
        const QSignalBlocker quiet(m_list);
        m_list->clear();
        for (const AppcastEntry &entry : m_history.entries()) {
            const QString date = entry.date.left(shownDate).trimmed();
            auto *item = new QListWidgetItem(entry.version, m_list);
            item->setData(VersionRow::dateRole, date);
            if (!date.isEmpty())
                item->setData(Qt::AccessibleTextRole, u"%1, %2"_s.arg(entry.version, date));
        }
    }
    showSelection();
}

void VersionHistoryView::showSelection()
{
    const AppcastEntry *chosen = m_history.selected();
    const qsizetype row = chosen ? chosen - m_history.entries().constData() : -1;
    {
        const QSignalBlocker quiet(m_list);
        m_list->setCurrentRow(int(row));
    }
    showPane();
}

void VersionHistoryView::showPane()
{
    const AppcastEntry *chosen = m_history.selected();
    if (chosen && chosen->notesURL) {
        m_notes->setUrl(*chosen->notesURL);
        m_pane->setCurrentWidget(m_notes);
    } else if (m_history.loading()) {
        m_pane->setCurrentWidget(m_waiting);
    } else if (m_history.error()) {
        m_failure->setDescription(*m_history.error());
        m_pane->setCurrentWidget(m_failure);
    } else {
        m_pane->setCurrentWidget(m_hint);
    }
}

void VersionHistoryView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Not when it comes back from the task bar.
    if (!event->spontaneous()) {
        m_list->setFocus();
        m_history.load();
    }
}

void VersionHistoryView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

void VersionHistoryView::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(listWidth, 0, 1, height(), hairline(palette()));
}

} // namespace nivora
