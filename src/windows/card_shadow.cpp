#include "card_shadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr qreal drop = 4; // the light comes from above
constexpr qreal blur = 8; // standard deviation of the blurred edge
constexpr qreal strengthOnLight = 0.22;
constexpr qreal strengthOnDark = 0.5;

// Distance from a point to a rounded rectangle around the origin; negative inside.
qreal distance(QPointF point, QSizeF half, qreal radius)
{
    const qreal x = std::abs(point.x()) - half.width() + radius;
    const qreal y = std::abs(point.y()) - half.height() + radius;
    return std::min(std::max(x, y), 0.0) + std::hypot(std::max(x, 0.0), std::max(y, 0.0)) - radius;
}

// The shadow of a card that has nothing but corners: its middle is stretched.
QPixmap corners(int side, qreal cornerRadius, qreal ratio, qreal strength)
{
    const int pixels = qRound(side * ratio);
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    const qreal half = side / 2.0;
    const QSizeF card(half - cardShadowReach, half - cardShadowReach);
    for (int y = 0; y < pixels; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < pixels; ++x) {
            const QPointF place((x + 0.5) / ratio - half, (y + 0.5) / ratio - half - drop);
            const qreal beyond = distance(place, card, cornerRadius);
            // A straight edge blurred, and faded out before the window ends.
            const qreal shade = 0.5 * std::erfc(beyond / (blur * M_SQRT2));
            const qreal end = std::clamp((cardShadowReach - drop - beyond) / 4, 0.0, 1.0);
            line[x] = qRgba(0, 0, 0, qRound(255 * strength * shade * end));
        }
    }
    QPixmap pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace

void drawCardShadow(QPainter &painter, const QRectF &card, qreal cornerRadius, bool dark)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const int corner = cardShadowReach + qCeil(cornerRadius) + qCeil(2 * blur);
    const int side = 2 * corner + 2;
    const QString key = u"nivora/shadow/%1/%2"_s.arg(ratio).arg(dark);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = corners(side, cornerRadius, ratio, dark ? strengthOnDark : strengthOnLight);
        QPixmapCache::insert(key, pixmap);
    }
    const QRectF outer =
        card.adjusted(-cardShadowReach, -cardShadowReach, cardShadowReach, cardShadowReach);
    // A card smaller than two corners shows less of each.
    const qreal width = std::min<qreal>(corner, outer.width() / 2);
    const qreal height = std::min<qreal>(corner, outer.height() / 2);
    const std::array<qreal, 4> toX{outer.left(), outer.left() + width, outer.right() - width,
                                   outer.right()};
    const std::array<qreal, 4> toY{outer.top(), outer.top() + height, outer.bottom() - height,
                                   outer.bottom()};
    const std::array<qreal, 4> fromX{0, width, side - width, qreal(side)};
    const std::array<qreal, 4> fromY{0, height, side - height, qreal(side)};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const QRectF target(QPointF(toX[column], toY[row]),
                                QPointF(toX[column + 1], toY[row + 1]));
            const QRectF source(QPointF(fromX[column], fromY[row]) * ratio,
                                QPointF(fromX[column + 1], fromY[row + 1]) * ratio);
            if (!target.isEmpty() && (row != 1 || column != 1))
                painter.drawPixmap(target, pixmap, source);
        }
    }
}

} // namespace nivora
