#include "focus_ring.h"

#include <QFocusEvent>
#include <QPainter>
#include <QPalette>

namespace nivora {

bool isFromKeyboard(const QFocusEvent &event)
{
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason ||
           event.reason() == Qt::ShortcutFocusReason;
}

void drawFocusRing(QPainter &painter, const QRectF &frame, const QPalette &palette)
{
    constexpr qreal width = 1.5;
    constexpr qreal radius = 5;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::Highlight), width));
    painter.setBrush(Qt::NoBrush);
    constexpr qreal half = width / 2;
    painter.drawRoundedRect(frame.adjusted(half, half, -half, -half), radius, radius);
}

} // namespace nivora
