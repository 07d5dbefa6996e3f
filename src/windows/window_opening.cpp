#include "window_opening.h"

#include "screen_places.h"

#include <QCursor>
#include <QScreen>
#include <QWidget>

namespace nivora {

void placeInTheMiddle(QWidget &window, const QSize &size)
{
    window.resize(size);
    if (const QScreen *screen = screenFor(QCursor::pos())) {
        QRect place(QPoint(), size);
        place.moveCenter(screen->availableGeometry().center());
        window.move(place.topLeft());
    }
}

void bringToFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace nivora
