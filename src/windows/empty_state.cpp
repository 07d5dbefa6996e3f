#include "empty_state.h"

#include "symbol_label.h"
#include "windows/theme.h"

#include <QVBoxLayout>

namespace nivora {

namespace {

// Logical pixels.
constexpr int symbolSide = 40;
constexpr int titlePixels = 15;
constexpr int descriptionPixels = 13;
constexpr int margin = 24;

} // namespace

EmptyState::EmptyState(const QString &symbol, const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_title(new QLabel(title, this))
    , m_description(new NoteLabel(descriptionPixels, this))
{
    QFont font = textFont(titlePixels);
    font.setWeight(QFont::DemiBold);
    m_title->setFont(font);
    for (QLabel *label : {m_title, static_cast<QLabel *>(m_description)}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    }
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->addStretch();
    column->addWidget(new SymbolLabel(symbol, SymbolLabel::Tone::Faint, symbolSide, this), 0,
                      Qt::AlignHCenter);
    column->addWidget(m_title);
    column->addWidget(m_description);
    column->addStretch();
}

void EmptyState::setDescription(const QString &text)
{
    m_description->setText(text);
}

} // namespace nivora
