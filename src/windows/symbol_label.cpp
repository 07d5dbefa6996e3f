#include "symbol_label.h"

#include "symbol.h"
#include "windows/theme.h"

#include <QPainter>
#include <QStyle>

namespace nivora {

SymbolLabel::SymbolLabel(const QString &name, Tone tone, int side, QWidget *parent)
    : QWidget(parent)
    , m_name(name)
    , m_tone(tone)
{
    setFixedSize(side, side);
}

void SymbolLabel::paintEvent(QPaintEvent *)
{
    const bool dark = isDark(palette());
    const auto color = [&] {
        switch (m_tone) {
        case Tone::Warning:
            return dark ? QColor(0xFF, 0xB3, 0x40) : QColor(0xC9, 0x6A, 0x00);
        case Tone::Success:
            return dark ? QColor(0x4C, 0xC3, 0x6A) : QColor(0x2A, 0x9D, 0x4B);
        case Tone::Faint:
            return faintText(palette());
        case Tone::Secondary:
            break;
        }
        return secondaryText(palette());
    };
    QPainter(this).drawPixmap(0, 0, symbolPixmap(m_name, size(), devicePixelRatioF(), color()));
}

NoteLabel::NoteLabel(int pixelSize, QWidget *parent, Tone tone)
    : QLabel(parent)
    , m_tone(tone)
{
    setFont(textFont(pixelSize));
}

void NoteLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(m_tone == Tone::Faint ? faintText(palette()) : secondaryText(palette()));
    const int flags = int(alignment()) | (wordWrap() ? Qt::TextWordWrap : 0);
    painter.drawText(contentsRect(), flags, text());
}

} // namespace nivora
