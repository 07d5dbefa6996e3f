#pragma once

#include <QRectF>

class QFocusEvent;
class QPainter;
class QPalette;

namespace nivora {

// Whether a control that got the focus shows a ring: only if the keyboard brought it
// there. One that has it back from a menu or another window is as it was `before`.
bool wantsRing(const QFocusEvent &event, bool before);

void drawFocusRing(QPainter &painter, const QRectF &frame, const QPalette &palette);

} // namespace nivora
