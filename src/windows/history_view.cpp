#include "history_view.h"

#include "empty_state.h"
#include "history_list.h"
#include "history_model.h"
#include "panel_button.h"
#include "symbol_label.h"
#include "windows/alert.h"
#include "windows/theme.h"

#include "stores/history_exchange.h"
#include "stores/history_store.h"

#include "platform/clipboard.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStackedWidget>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr QSize leastSize(360, 240);
constexpr int sideMargin = 16;
constexpr int barMargin = 9; // above and below
constexpr int gap = 8;
constexpr int symbolSide = 16;
constexpr int fieldPixels = 14;
constexpr int countPixels = 11;

constexpr int longestShownQuery = 60;

const auto jsonSuffix = u"json"_s;
const auto csvSuffix = u"csv"_s;

// Without the spaces and tabs at its ends.
QString trimmed(const QString &query)
{
    const auto isBlank = [](QChar c) {
        return c == u'\t' || c.category() == QChar::Separator_Space;
    };
    qsizetype first = 0;
    qsizetype last = query.size();
    while (first < last && isBlank(query[first]))
        ++first;
    while (last > first && isBlank(query[last - 1]))
        --last;
    return query.sliced(first, last - first);
}

} // namespace

HistoryView::HistoryView(HistoryStore &store, platform::Clipboard &clipboard)
    : m_store(store)
    , m_clipboard(clipboard)
    , m_model(new HistoryModel)
    , m_field(new QLineEdit(this))
    , m_export(new PanelButton(PanelButton::Look::Plain, this))
    , m_count(new NoteLabel(countPixels, this))
    , m_clear(new PanelButton(PanelButton::Look::Plain, this))
    , m_bar(makeBar())
    , m_pages(new QStackedWidget(this))
    , m_blank(new QWidget(this))
    , m_empty(new EmptyState(u"clock.arrow.circlepath"_s, tr("暂无翻译历史"), this))
    , m_noResults(new EmptyState(u"magnifyingglass"_s, tr("没有结果"), this))
    , m_list(new HistoryList(*m_model, this))
{
    m_model->setParent(this);
    setMinimumSize(leastSize);
    m_empty->setDescription(tr("翻译会自动记录在本地。可在设置里关闭或清空。"));
    for (QWidget *page : {m_blank, static_cast<QWidget *>(m_empty),
                          static_cast<QWidget *>(m_noResults), static_cast<QWidget *>(m_list)})
        m_pages->addWidget(page);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(1); // the divider
    column->addWidget(m_bar);
    column->addWidget(m_pages, 1);

    connect(m_field, &QLineEdit::textChanged, this, &HistoryView::search);
    connect(m_export, &PanelButton::clicked, this, &HistoryView::askForFile);
    connect(m_clear, &PanelButton::clicked, this, [this] { m_store.clear(); });
    connect(m_list, &HistoryList::copyRequested, this,
            [this](const QString &text) { m_clipboard.setText(text); });
    connect(m_list, &HistoryList::deleteRequested, this,
            [this](const QUuid &id) { m_store.remove(id); });
    connect(&m_store, &HistoryStore::changed, this, &HistoryView::render);
    render();
}

QWidget *HistoryView::makeBar()
{
    auto *bar = new QWidget(this);
    m_field->setFont(textFont(fieldPixels));
    m_field->setFrame(false);
    m_field->setPlaceholderText(tr("搜索原文或译文"));
    m_field->setAccessibleName(m_field->placeholderText());
    QPalette transparent;
    transparent.setColor(QPalette::Base, Qt::transparent);
    m_field->setPalette(transparent);
    m_export->setSymbol(u"square.and.arrow.up"_s);
    m_export->setHint(tr("导出所示记录…"));
    m_clear->setText(tr("清空"));
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(sideMargin, barMargin, sideMargin - gap, barMargin);
    row->setSpacing(gap);
    row->addWidget(
        new SymbolLabel(u"magnifyingglass"_s, SymbolLabel::Tone::Secondary, symbolSide, bar));
    row->addWidget(m_field, 1);
    row->addWidget(m_export);
    row->addWidget(m_count);
    row->addWidget(m_clear);
    return bar;
}

void HistoryView::search()
{
    m_store.applySearch(trimmed(m_field->text()));
    m_list->verticalScrollBar()->setValue(0);
}

void HistoryView::render()
{
    m_count->setText(QString::number(m_store.totalCount()));
    m_clear->setEnabled(m_store.totalCount() > 0);
    m_export->setEnabled(!m_store.entries().empty());
    QString query = m_store.search();
    if (query.size() > longestShownQuery)
        query = query.left(longestShownQuery) + u'…';
    m_noResults->setDescription(tr("没有与“%1”匹配的记录。").arg(query));
    m_model->setEntries(m_store.entries());
    m_pages->setCurrentWidget(pageFor());
}

QWidget *HistoryView::pageFor() const
{
    if (m_store.totalCount() == 0)
        return m_store.isReading() ? m_blank : m_empty;
    if (m_store.entries().empty())
        return m_noResults;
    return m_list;
}

void HistoryView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_store.setWatched(true);
    render();
}

void HistoryView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_store.setWatched(false);
}

void HistoryView::keyPressEvent(QKeyEvent *event)
{
    const bool cancels = event->matches(QKeySequence::Cancel);
    if (cancels && !m_field->text().isEmpty())
        m_field->clear();
    else if (cancels || event->matches(QKeySequence::Close))
        close();
    else if (event->matches(QKeySequence::Find))
        m_field->setFocus(Qt::ShortcutFocusReason);
    else if (event->key() == Qt::Key_Down && m_field->hasFocus())
        m_list->setFocus(Qt::TabFocusReason);
    else
        QWidget::keyPressEvent(event);
}

void HistoryView::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(0, m_bar->height(), width(), 1, hairline(palette()));
}

void HistoryView::askForFile()
{
    if (!m_dialog) {
        m_dialog = new QFileDialog(this, tr("导出所示记录"));
        m_dialog->setAcceptMode(QFileDialog::AcceptSave);
        m_dialog->setNameFilters({tr("CSV 表格 (*.csv)"), tr("JSON 文件 (*.json)")});
        m_dialog->setDefaultSuffix(csvSuffix);
        m_dialog->selectFile(tr("翻译历史") + u'.' + csvSuffix);
        connect(m_dialog, &QFileDialog::filterSelected, this, [this](const QString &filter) {
            const QString suffix = filter.contains(jsonSuffix) ? jsonSuffix : csvSuffix;
            const QFileInfo file(m_dialog->selectedFiles().value(0));
            m_dialog->setDefaultSuffix(suffix);
            m_dialog->selectFile(file.completeBaseName() + u'.' + suffix);
        });
        connect(m_dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
            exportTo(path, path.endsWith(u'.' + jsonSuffix, Qt::CaseInsensitive));
        });
    }
    m_dialog->open();
}

void HistoryView::exportTo(const QString &path, bool asJson)
{
    m_exporting = exportHistory(
        m_store.entries(), asJson ? HistoryFormat::Json : HistoryFormat::Csv, path,
        [this](const QString &problem) {
            if (!problem.isEmpty())
                m_alert = showAlert({tr("没能导出翻译历史"), problem, {tr("好")}}, [](int) {});
        });
}

} // namespace nivora
