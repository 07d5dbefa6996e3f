#include "settings_form.h"

#include "settings_section.h"

#include <QVBoxLayout>

namespace nivora {

namespace {

// Logical pixels. The scroll bar takes the rest of the right margin.
constexpr QMargins margins(20, 16, 10, 20);
constexpr int sectionGap = 18;

} // namespace

SettingsForm::SettingsForm(QWidget *parent)
    : QWidget(parent)
    , m_column(new QVBoxLayout(this))
{
    m_column->setContentsMargins(margins);
    m_column->setSpacing(sectionGap);
    m_column->addStretch();
}

SettingsSection *SettingsForm::addSection(const QString &title)
{
    auto *section = new SettingsSection(title, this);
    addSection(section);
    return section;
}

void SettingsForm::addSection(QWidget *section)
{
    m_column->insertWidget(m_column->count() - 1, section);
}

} // namespace nivora
