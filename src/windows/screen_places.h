#pragma once

#include <QPoint>
#include <QRect>

class QScreen;

namespace nivora {

namespace platform {
class WindowSystem;
}

// A place in device pixels of all screens as the toolkit counts it, in logical
// pixels: the origin of each screen stays in device pixels.
QPoint logicalPoint(const QPointF &device);

// The screen at this place, or else the primary one; null where there is none.
QScreen *screenFor(const QPoint &logical);

// What docks and bars leave of the screen, in logical pixels.
QRect workArea(const QScreen &screen, const platform::WindowSystem &windowSystem);

} // namespace nivora
