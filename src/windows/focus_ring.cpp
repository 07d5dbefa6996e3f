#include "focus_ring.h"

#include <QFocusEvent>
#include <QPainter>
#include <QPalette>

namespace nivora {

bool wantsRing(const QFocusEvent &event, bool before)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
        return before;
    case Qt::MouseFocusReason:
    case Qt::OtherFocusReason:
    case Qt::NoFocusReason:
        break;
    }
    return false;
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
