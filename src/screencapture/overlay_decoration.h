#pragma once

#include "region_selection.h"

#include <QFont>
#include <QImage>
#include <QRect>
#include <QRegion>

class QPainter;

namespace nivora::screencapture {

// What is drawn above the dimmed picture: before there is a corner the crosshair
// and a hint, then the region with its size.
class OverlayDecoration
{
public:
    // `scale`: pixels for one logical pixel.
    explicit OverlayDecoration(double scale);

    // All that paint() may touch. `screen` is the one that the pointer is on, in
    // pixels of the window.
    QRegion extent(const RegionSelection &selection, const QRect &screen) const;

    void paint(QPainter &painter, const RegionSelection &selection, const QRect &screen,
               const QImage &picture) const;

private:
    int pixels(double logical) const;
    QRect pill(const QString &text) const; // its size, at the origin
    QRect hintBox(const RegionSelection &selection, const QRect &screen) const;
    QRect readoutBox(const RegionSelection &selection, const QRect &screen) const;
    void paintPill(QPainter &painter, const QRect &box, const QString &text) const;

    double m_scale;
    QFont m_font;
};

} // namespace nivora::screencapture
