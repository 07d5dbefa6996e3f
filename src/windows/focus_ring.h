#pragma once

#include <QRectF>

class QFocusEvent;
class QPainter;
class QPalette;

namespace nivora {

// Whether the keyboard brought the focus: only then it is worth a ring.
bool isFromKeyboard(const QFocusEvent &event);

void drawFocusRing(QPainter &painter, const QRectF &frame, const QPalette &palette);

} // namespace nivora
