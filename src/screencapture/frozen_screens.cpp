#include "frozen_screens.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

namespace nivora::screencapture {

FrozenScreens FrozenScreens::take()
{
    FrozenScreens frozen;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens)
        frozen.area |= screen->geometry();
    frozen.picture = QImage(frozen.area.size(), QImage::Format_RGB32);
    frozen.picture.fill(Qt::black); // where there is no screen
    QPainter painter(&frozen.picture);
    for (QScreen *screen : screens) {
        const QPixmap shown = screen->grabWindow(0);
        if (shown.isNull())
            return {frozen.area, {}};
        painter.drawPixmap(screen->geometry().topLeft() - frozen.area.topLeft(), shown);
    }
    return frozen;
}

} // namespace nivora::screencapture
