#include "letter_icon.h"

#include "windows/theme.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// What trays and task bars ask for, at single and double scale.
constexpr int usualSides[] = {16, 22, 24, 32, 44, 48, 64, 128};
// What is drawn again and again. The larger ones go to the X server once for each
// window, and kept they would be a twelfth of the heap of a program at rest.
constexpr int largestKeptSide = 48;

const QColor markColor(0xFF, 0x9F, 0x0A);

// A capital N in whole pixels: two stems and a diagonal between their corners.
QPainterPath letterOf(int side)
{
    const int stem = qMax(2, qRound(side * 0.13));
    const int height = qRound(side * 0.56);
    const int width = qRound(side * 0.5);
    const int left = (side - width) / 2;
    const int top = (side - height) / 2;
    const int right = left + width;
    const int bottom = top + height;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRect(left, top, stem, height);
    path.addRect(right - stem, top, stem, height);
    const qreal foot = stem * 1.25; // as thick as the stems where it is measured across
    path.addPolygon(
        QPolygonF({QPointF(left, top), QPointF(left + foot, top), QPointF(right, bottom),
                   QPointF(right - foot, bottom), QPointF(left, top)}));
    return path;
}

QPixmap drawn(int side, bool marked)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(themePalette(false).color(QPalette::Highlight));
    const int inset = side / 32;
    const QRectF tile = QRectF(0, 0, side, side).adjusted(inset, inset, -inset, -inset);
    painter.drawRoundedRect(tile, side * 0.22, side * 0.22);
    painter.fillPath(letterOf(side), Qt::white);
    if (marked) {
        const qreal mark = qMax(6.0, side * 0.34);
        const QRectF place(side - mark, side - mark, mark, mark);
        // Cut out around the mark, so that it stands off the tile in any colour.
        const qreal gap = qMax(1.0, side / 22.0);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.drawEllipse(place.adjusted(-gap, -gap, gap, gap));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setBrush(markColor);
        painter.drawEllipse(place);
    }
    return pixmap;
}

class LetterIconEngine final : public QIconEngine
{
public:
    explicit LetterIconEngine(bool marked)
        : m_marked(marked)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QRect place(QPoint(), actualSize(rect.size(), mode, state));
        place.moveCenter(rect.center());
        painter->drawPixmap(place, pixmap((QSizeF(place.size()) * ratio).toSize(), mode, state));
    }

    // Trays may offer any shape.
    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int side = qMin(size.width(), size.height());
        return {side, side};
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int side = qMin(size.width(), size.height());
        if (side <= 0)
            return {};
        const QString key = u"nivora/letter/%1/%2"_s.arg(side).arg(m_marked);
        QPixmap pixmap;
        if (!QPixmapCache::find(key, &pixmap)) {
            pixmap = drawn(side, m_marked);
            if (side <= largestKeptSide)
                QPixmapCache::insert(key, pixmap);
        }
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int side : usualSides)
            sizes.append({side, side});
        return sizes;
    }

    QIconEngine *clone() const override { return new LetterIconEngine(m_marked); }

private:
    bool m_marked;
};

} // namespace

QIcon letterIcon(bool marked)
{
    return QIcon(new LetterIconEngine(marked));
}

} // namespace nivora
