#include "glossary_settings_section.h"

#include "glossary_delegate.h"
#include "glossary_table.h"
#include "panel_button.h"
#include "settings_binding.h"
#include "symbol_label.h"

#include "stores/glossary_exchange.h"
#include "stores/glossary_store.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSaveFile>
#include <QScrollArea>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int notePixels = 11;
constexpr int gap = 6;

constexpr std::size_t fewestRowsAtOnce = 2;
constexpr std::size_t mostRowsAtOnce = 7;
// From so many terms on there is something to look for.
constexpr std::size_t worthFiltering = 6;

// A file is read at once; terms of twenty thousand rows are three megabytes.
constexpr qint64 maximumFile = 32 * 1024 * 1024;

} // namespace

GlossarySettingsSection::GlossarySettingsSection(GlossaryStore &store, QWidget *parent)
    : SettingsSection(tr("术语表"), parent)
    , m_store(store)
{
    m_filter = makeField(this);
    m_filter->setPlaceholderText(tr("筛选术语"));
    m_filter->setClearButtonEnabled(true);
    setName(*m_filter, m_filter->placeholderText());
    m_filterRow = addBlock(m_filter);
    addFlush(makeTable());
    addBlock(makeButtons());
    m_note = new NoteLabel(notePixels, this);
    m_noteRow = addNote(m_note);
    m_noteRow->hide();
    addCaption(tr("翻译时源文出现的术语会按此表固定译法（中↔日 双向）。"));
    connect(m_filter, &QLineEdit::textChanged, m_table, &GlossaryTable::setFilter);
    connect(&m_store, &GlossaryStore::changed, this, &GlossarySettingsSection::render);
    render();
}

QWidget *GlossarySettingsSection::makeTable()
{
    m_table = new GlossaryTable(m_store, this);
    connect(m_table, &GlossaryTable::pasted, this,
            [this](int count) { tell(tr("已粘贴 %n 条新术语。", nullptr, count)); });
    // Once the layout has its way, which a new row changes.
    connect(m_table, &GlossaryTable::keyboardUsed, this,
            [this] { m_reveal = platform::delay(0ms, [this] { revealTable(); }); });
    return m_table;
}

PanelButton *GlossarySettingsSection::makeButton(const QString &label, const QString &symbol,
                                                 QWidget *parent)
{
    auto *button = new PanelButton(PanelButton::Look::Secondary, parent);
    button->setText(label);
    button->setSymbol(symbol);
    return button;
}

QWidget *GlossarySettingsSection::makeButtons()
{
    auto *content = new QWidget(this);
    auto *add = makeButton(tr("添加术语"), u"plus"_s, content);
    auto *import = makeButton(tr("导入…"), {}, content);
    m_export = makeButton(tr("导出…"), {}, content);
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(gap);
    line->addWidget(add);
    line->addStretch();
    line->addWidget(import);
    line->addWidget(m_export);
    connect(add, &PanelButton::clicked, this, &GlossarySettingsSection::addTerm);
    connect(import, &PanelButton::clicked, this, &GlossarySettingsSection::importFile);
    connect(m_export, &PanelButton::clicked, this, &GlossarySettingsSection::exportFile);
    return content;
}

void GlossarySettingsSection::render()
{
    const std::size_t count = m_store.terms().size();
    const auto shown = std::clamp<std::size_t>(count, fewestRowsAtOnce, mostRowsAtOnce);
    m_table->setFixedHeight(int(shown) * GlossaryDelegate::rowHeight);
    m_filterRow->setVisible(count >= worthFiltering || !m_filter->text().isEmpty());
    m_export->setEnabled(count > 0);
}

// The form scrolls by itself to what gets the focus, and no further.
void GlossarySettingsSection::revealTable()
{
    QWidget *form = this;
    while (form && !qobject_cast<QScrollArea *>(form))
        form = form->parentWidget();
    auto *scrolling = qobject_cast<QScrollArea *>(form);
    if (!scrolling)
        return;
    const QPoint centre = m_table->mapTo(scrolling->widget(), m_table->rect().center());
    scrolling->ensureVisible(centre.x(), centre.y(), 0, m_table->height() / 2 + gap);
}

void GlossarySettingsSection::addTerm()
{
    m_filter->clear(); // which would hide the new one
    m_table->addTerm();
}

void GlossarySettingsSection::tell(const QString &note)
{
    m_note->setText(note);
    m_noteRow->show();
}

void GlossarySettingsSection::importFile()
{
    auto *dialog = new QFileDialog(this, tr("导入术语表"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({tr("表格文件 (*.csv *.tsv *.txt)"), tr("所有文件 (*)")});
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        QFile file(path);
        // Opening a pipe would wait for a writer.
        const bool isReadable = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
                                file.size() <= maximumFile;
        const auto text = isReadable ? exchangeText(file.readAll()) : std::nullopt;
        if (!text)
            return tell(tr("没能导入：不是 UTF-8 编码的 CSV 文件。"));
        const auto terms = glossaryFromText(*text);
        const int count = m_store.append(terms);
        const int known = int(terms.size()) - count;
        QString note = tr("已导入 %n 条新术语。", nullptr, count);
        if (known > 0)
            note += tr("%n 条已在表中。", nullptr, known);
        tell(note);
    });
    dialog->open();
}

void GlossarySettingsSection::exportFile()
{
    auto *dialog = new QFileDialog(this, tr("导出术语表"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(u"csv"_s);
    dialog->setNameFilters({tr("CSV 文件 (*.csv)")});
    dialog->selectFile(u"glossary.csv"_s);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        QSaveFile file(path);
        const bool isSaved = file.open(QIODevice::WriteOnly) &&
                             file.write(glossaryToCsv(m_store.terms()).toUtf8()) >= 0 &&
                             file.commit();
        tell(isSaved ? tr("已导出 %n 条术语。", nullptr, int(m_store.terms().size()))
                     : tr("没能导出：%1").arg(file.errorString()));
    });
    dialog->open();
}

} // namespace nivora
