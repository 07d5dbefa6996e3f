#include "settings_section.h"

#include "settings_card.h"
#include "symbol_label.h"
#include "windows/theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr int notePixels = 11;
constexpr int titleGap = 6;
constexpr int titleIndent = 3;
constexpr int sidePadding = 14;
constexpr int rowPadding = 6; // above and below
constexpr int rowHeight = 40; // at least
constexpr int captionPadding = 10;
constexpr int gap = 14;

QHBoxLayout *makeRow(QWidget *row, const QMargins &margins)
{
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(margins);
    layout->setSpacing(gap);
    return layout;
}

} // namespace

SettingsSection::SettingsSection(const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_card(new SettingsCard(this))
{
    auto *heading = new QLabel(title, this);
    heading->setFont(titleFont(textPixels));
    heading->setIndent(titleIndent);
    heading->setTextFormat(Qt::PlainText);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(titleGap);
    column->addWidget(heading);
    column->addWidget(m_card);
}

QLabel *SettingsSection::makeLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(textFont(textPixels));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void SettingsSection::setName(QWidget &control, const QString &name)
{
    control.setAccessibleName(name);
    // On Linux the toolkit gives a combo box its choice for a name.
    if (qobject_cast<QComboBox *>(&control))
        control.setAccessibleDescription(name);
}

QWidget *SettingsSection::addRow(const QString &label, QWidget *control, QWidget *named)
{
    auto *row = new QWidget(m_card);
    row->setMinimumHeight(rowHeight);
    auto *text = makeLabel(label, row);
    QWidget &target = named ? *named : *control;
    text->setBuddy(&target);
    setName(target, label);
    auto *layout = makeRow(row, {sidePadding, rowPadding, sidePadding, rowPadding});
    layout->addWidget(text, 1);
    layout->addWidget(control);
    m_card->addRow(row, true);
    return row;
}

QWidget *SettingsSection::addBlock(QWidget *content)
{
    auto *row = new QWidget(m_card);
    makeRow(row, {sidePadding, captionPadding, sidePadding, captionPadding})->addWidget(content);
    m_card->addRow(row, true);
    return row;
}

QWidget *SettingsSection::addFlush(QWidget *content)
{
    auto *row = new QWidget(m_card);
    makeRow(row, {1, rowPadding, 1, rowPadding})->addWidget(content);
    m_card->addRow(row, true);
    return row;
}

QWidget *SettingsSection::addCaption(const QString &text)
{
    auto *note = new NoteLabel(notePixels, m_card);
    note->setText(text);
    return addNote(note);
}

QWidget *SettingsSection::addNote(NoteLabel *note)
{
    note->setWordWrap(true);
    return addSubRow(note);
}

QWidget *SettingsSection::addSubRow(QWidget *content)
{
    auto *row = new QWidget(m_card);
    makeRow(row, {sidePadding, 0, sidePadding, captionPadding})->addWidget(content);
    m_card->addRow(row, false);
    return row;
}

} // namespace nivora
