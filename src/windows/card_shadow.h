#pragma once

#include <QRectF>

class QPainter;

namespace nivora {

// How far a card's shadow reaches beyond it, in logical pixels.
inline constexpr int cardShadowReach = 20;

// The soft shadow around a card.
void drawCardShadow(QPainter &painter, const QRectF &card, qreal cornerRadius, bool dark);

} // namespace nivora
