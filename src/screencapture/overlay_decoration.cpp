#include "overlay_decoration.h"

#include "windows/theme.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora::screencapture {

namespace {

// Logical pixels.
constexpr int fontSize = 13;
constexpr int paddingAcross = 10;
constexpr int paddingAlong = 5;
constexpr int gap = 8;
constexpr int hintDistance = 32; // from the edge of the screen
constexpr double radius = 7;
constexpr double frameWidth = 1.5;

// On any picture, so the same in both themes.
const QColor pillColor(0x1D, 0x1E, 0x21, 0xEB);
const QColor pillText(0xEC, 0xED, 0xEF);
const QColor pillEdge(0xFF, 0xFF, 0xFF, 0x38); // tells it from dark windows
const QColor crosshairColor(0xFF, 0xFF, 0xFF, 0xB0);

QString hint()
{
    return QCoreApplication::translate("ScreenCapture",
                                       "拖动选出要翻译的文字 · 按住空格可移动 · Esc 取消");
}

QString readout(const QSize &size)
{
    return u"%1 × %2"_s.arg(size.width()).arg(size.height());
}

} // namespace

OverlayDecoration::OverlayDecoration(double scale)
    : m_scale(scale)
    , m_font(textFont(pixels(fontSize)))
{
}

int OverlayDecoration::pixels(double logical) const
{
    return std::max(1, int(std::lround(logical * m_scale)));
}

QRect OverlayDecoration::pill(const QString &text) const
{
    const QFontMetrics metrics(m_font);
    return {0, 0, metrics.horizontalAdvance(text) + 2 * pixels(paddingAcross),
            metrics.height() + 2 * pixels(paddingAlong)};
}

QRect OverlayDecoration::hintBox(const RegionSelection &selection, const QRect &screen) const
{
    QRect box = pill(hint());
    box.moveCenter(screen.center());
    box.moveTop(screen.top() + pixels(hintDistance));
    // Never where the user is looking.
    const int clearance = pixels(hintDistance);
    if (box.adjusted(-clearance, -clearance, clearance, clearance).contains(selection.pointer()))
        box.moveBottom(screen.bottom() - pixels(hintDistance));
    return box;
}

// Below the region's right edge; above it, or within, where there is no room.
QRect OverlayDecoration::readoutBox(const RegionSelection &selection, const QRect &screen) const
{
    const QRect region = selection.region();
    QRect box = pill(readout(region.size()));
    box.moveTopRight(region.bottomRight() + QPoint(0, pixels(gap)));
    if (box.bottom() > screen.bottom())
        box.moveBottom(region.top() - pixels(gap));
    if (box.top() < screen.top())
        box.moveBottomRight(region.bottomRight() - QPoint(pixels(gap), pixels(gap)));
    box.moveLeft(std::clamp(box.left(), screen.left(), screen.right() - box.width()));
    return box;
}

QRegion OverlayDecoration::extent(const RegionSelection &selection, const QRect &screen) const
{
    const int frame = pixels(frameWidth) + 1;
    if (selection.hasCorner()) {
        return QRegion(selection.region().adjusted(-frame, -frame, frame, frame)) +
               readoutBox(selection, screen);
    }
    const QPoint at = selection.pointer();
    const int line = pixels(1);
    return QRegion(screen.left(), at.y(), screen.width(), line) +
           QRegion(at.x(), screen.top(), line, screen.height()) + hintBox(selection, screen);
}

void OverlayDecoration::paint(QPainter &painter, const RegionSelection &selection,
                              const QRect &screen, const QImage &picture) const
{
    if (!selection.hasCorner()) {
        const QPoint at = selection.pointer();
        const int line = pixels(1);
        painter.fillRect(screen.left(), at.y(), screen.width(), line, crosshairColor);
        painter.fillRect(at.x(), screen.top(), line, screen.height(), crosshairColor);
        paintPill(painter, hintBox(selection, screen), hint());
        return;
    }
    const QRect region = selection.region();
    painter.drawImage(region.topLeft(), picture, region);
    // Around the region: every pixel of it is shown as it will be taken.
    const int width = pixels(frameWidth);
    const QColor colour = themePalette(true).color(QPalette::Highlight);
    const QRect outer = region.adjusted(-width, -width, width, width);
    for (const QRect &side : QRegion(outer) - region)
        painter.fillRect(side, colour);
    paintPill(painter, readoutBox(selection, screen), readout(region.size()));
}

void OverlayDecoration::paintPill(QPainter &painter, const QRect &box, const QString &text) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = pixels(1);
    painter.setPen(QPen(pillEdge, line));
    painter.setBrush(pillColor);
    // Its line lies within the box, which is what gets painted over again.
    const QRectF middle = QRectF(box).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    painter.drawRoundedRect(middle, radius * m_scale, radius * m_scale);
    painter.setPen(pillText);
    painter.setFont(m_font);
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace nivora::screencapture
