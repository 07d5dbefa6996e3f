#include "toggle_switch.h"

#include "focus_ring.h"
#include "windows/theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace nivora {

namespace {

// Logical pixels.
constexpr QSize trackSize(34, 20);
constexpr qreal knobInset = 2;
constexpr qreal ringWidth = 2;

} // namespace

ToggleSwitch::ToggleSwitch(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const
{
    return trackSize;
}

void ToggleSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF track(QPointF(), trackSize);
    track.moveCenter(QRectF(rect()).center());
    const bool dark = isDark(palette());

    QColor ground = palette().color(QPalette::WindowText);
    ground.setAlphaF(dark ? 0.26f : 0.2f);
    if (isChecked())
        ground = palette().color(QPalette::Highlight);
    if (isEnabled() && underMouse())
        ground = dark ? ground.lighter(112) : ground.darker(106);
    if (!isEnabled())
        ground.setAlphaF(ground.alphaF() * 0.5f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);

    const qreal side = track.height() - 2 * knobInset;
    QRectF knob(0, track.top() + knobInset, side, side);
    const bool isRight = isChecked() != (layoutDirection() == Qt::RightToLeft);
    if (isRight)
        knob.moveRight(track.right() - knobInset);
    else
        knob.moveLeft(track.left() + knobInset);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawEllipse(knob.translated(0, 0.75));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob);

    if (hasFocus() && m_ring) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(
            palette().color(isChecked() ? QPalette::WindowText : QPalette::Highlight), ringWidth));
        constexpr qreal half = ringWidth / 2;
        const QRectF ring = track.adjusted(half, half, -half, -half);
        painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
    }
}

void ToggleSwitch::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void ToggleSwitch::focusInEvent(QFocusEvent *event)
{
    m_ring = wantsRing(*event, m_ring);
    QAbstractButton::focusInEvent(event);
}

} // namespace nivora
