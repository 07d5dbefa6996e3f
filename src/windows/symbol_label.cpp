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
    const QColor warning = isDark(palette()) ? QColor(0xFF, 0xB3, 0x40) : QColor(0xC9, 0x6A, 0x00);
    const QColor color = m_tone == Tone::Warning ? warning : secondaryText(palette());
    QPainter(this).drawPixmap(0, 0, symbolPixmap(m_name, size(), devicePixelRatioF(), color));
}

NoteLabel::NoteLabel(int pixelSize, QWidget *parent)
    : QLabel(parent)
{
    setFont(textFont(pixelSize));
}

void NoteLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(secondaryText(palette()));
    const int flags = int(alignment()) | (wordWrap() ? Qt::TextWordWrap : 0);
    painter.drawText(contentsRect(), flags, text());
}

} // namespace nivora
