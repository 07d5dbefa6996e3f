#include "symbol_label.h"

#include "symbol.h"
#include "windows/theme.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

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
    setTextFormat(Qt::PlainText);
}

int NoteLabel::heightForWidth(int width) const
{
    if (!wordWrap())
        return QLabel::heightForWidth(width);
    QTextLayout layout;
    return qCeil(layOut(layout, width));
}

QSize NoteLabel::minimumSizeHint() const
{
    return wordWrap() ? QSize(0, fontMetrics().height()) : QLabel::minimumSizeHint();
}

// Gives the height.
qreal NoteLabel::layOut(QTextLayout &layout, qreal width) const
{
    layout.setText(QString(text()).replace(u'\n', QChar::LineSeparator));
    layout.setFont(font());
    QTextOption option(alignment());
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += std::max<qreal>(line.height(), fontMetrics().lineSpacing());
    }
    layout.endLayout();
    return height;
}

QColor NoteLabel::ink() const
{
    switch (m_tone) {
    case Tone::Faint:
        return faintText(palette());
    case Tone::Error:
        return errorText(palette());
    case Tone::Secondary:
        break;
    }
    return secondaryText(palette());
}

void NoteLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(ink());
    const QRect frame = contentsRect();
    if (!wordWrap()) {
        painter.drawText(frame, int(alignment()), text());
        return;
    }
    QTextLayout layout;
    const qreal spare = frame.height() - layOut(layout, frame.width());
    const bool centred = alignment().testFlag(Qt::AlignVCenter) && spare > 0;
    layout.draw(&painter, QPointF(frame.left(), frame.top() + (centred ? spare / 2 : 0)));
}

} // namespace nivora
