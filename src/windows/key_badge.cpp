#include "key_badge.h"

#include "windows/theme.h"

#include <QPainter>

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 13;
constexpr QMargins padding(9, 4, 9, 4);
constexpr qreal radius = 6;

} // namespace

KeyBadge::KeyBadge(const QString &keys, QWidget *parent)
    : QLabel(keys, parent)
{
    QFont font = textFont(textPixels);
    font.setWeight(QFont::Medium);
    setFont(font);
    setContentsMargins(padding);
    setAlignment(Qt::AlignCenter);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void KeyBadge::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(hairline(palette()));
        painter.setBrush(palette().color(QPalette::Button));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
    QLabel::paintEvent(event);
}

} // namespace nivora
