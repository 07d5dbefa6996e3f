#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace nivora {

// A picture of the product's own symbol set, drawn in one colour and crisp at
// the given device pixel ratio. `size` is in logical pixels.
QPixmap symbolPixmap(const QString &name, const QSize &size, qreal devicePixelRatio,
                     const QColor &color);

} // namespace nivora
