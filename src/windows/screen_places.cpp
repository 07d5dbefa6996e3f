#include "screen_places.h"

#include "platform/window_system.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtMath>

namespace nivora {

namespace {

QRect deviceRect(const QScreen &screen)
{
    const QRect logical = screen.geometry();
    return {logical.topLeft(), (QSizeF(logical.size()) * screen.devicePixelRatio()).toSize()};
}

} // namespace

QPoint logicalPoint(const QPointF &device)
{
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRectF extent = deviceRect(*screen);
        if (extent.contains(device))
            return (extent.topLeft() + (device - extent.topLeft()) / screen->devicePixelRatio())
                .toPoint();
    }
    return device.toPoint();
}

QScreen *screenFor(const QPoint &logical)
{
    for (QScreen *screen : QGuiApplication::screens()) {
        if (screen->geometry().contains(logical))
            return screen;
    }
    return QGuiApplication::primaryScreen();
}

QRect workArea(const QScreen &screen, const platform::WindowSystem &windowSystem)
{
    const QRect whole = deviceRect(screen);
    const QRect free = windowSystem.workArea(whole);
    const qreal ratio = screen.devicePixelRatio();
    const QPointF origin = whole.topLeft();
    const QRectF area(origin + QPointF(free.topLeft() - whole.topLeft()) / ratio,
                      QSizeF(free.size()) / ratio);
    // Whole pixels of it: where one is shared, it is the dock's.
    const QPoint first(qCeil(area.left()), qCeil(area.top()));
    const QPoint beyond(qFloor(area.right()), qFloor(area.bottom()));
    return QRect(first, beyond - QPoint(1, 1)).intersected(screen.geometry());
}

} // namespace nivora
