#include "symbol.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

using namespace Qt::Literals::StringLiterals;

// Nothing else refers to the resources, and the linker drops from a static
// library what nothing refers to.
static void keepResources()
{
    Q_INIT_RESOURCE(symbols);
}

namespace nivora {

QPixmap symbolPixmap(const QString &name, const QSize &size, qreal devicePixelRatio,
                     const QColor &color)
{
    const QString key = u"nivora/%1/%2x%3@%4/%5"_s.arg(name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(devicePixelRatio)
                            .arg(color.rgba(), 8, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    keepResources();
    QFile file(u":/nivora/symbols/%1.svg"_s.arg(name));
    if (!file.open(QIODevice::ReadOnly)) {
        Q_ASSERT_X(false, "symbolPixmap", "no such symbol");
        return {};
    }
    // The shapes are drawn opaque, and the colour's alpha is laid over them as a
    // whole: strokes that cross would show otherwise.
    QSvgRenderer renderer(file.readAll().replace("currentColor", color.name().toLatin1()));
    pixmap = QPixmap(size * devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(pixmap.rect(), QColor(0, 0, 0, color.alpha()));
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace nivora
