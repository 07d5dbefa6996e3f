#include "product_controls.h"

#include "symbol.h"
#include "windows/theme.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr qreal fieldRadius = 6;
constexpr qreal lineInUse = 1.5;
constexpr QSize chevron(10, 10);
constexpr int chevronInset = 8;
constexpr qreal grooveWidth = 4;
constexpr qreal progressWidth = 6;

QPalette::ColorGroup groupOf(const QStyleOption &option)
{
    return option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
}

bool hasKeyboard(const QStyleOption &option)
{
    return option.state.testFlag(QStyle::State_HasFocus) &&
           option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

QColor accent(const QStyleOption &option)
{
    QColor color = option.palette.color(QPalette::Highlight);
    if (groupOf(option) == QPalette::Disabled)
        color.setAlphaF(0.4f);
    return color;
}

void fillBar(QPainter &painter, const QRectF &bar, const QColor &color)
{
    const qreal radius = std::min(bar.width(), bar.height()) / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(bar, radius, radius);
}

} // namespace

void drawField(QPainter &painter, const QStyleOption &field, bool inUse)
{
    const qreal width = inUse ? lineInUse : 1;
    const qreal inset = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(inUse ? field.palette.color(QPalette::Highlight) : hairline(field.palette), width));
    painter.setBrush(field.palette.color(QPalette::Base));
    painter.drawRoundedRect(QRectF(field.rect).adjusted(inset, inset, -inset, -inset), fieldRadius,
                            fieldRadius);
    painter.restore();
}

void drawPicker(QPainter &painter, const QStyleOptionComboBox &picker)
{
    drawField(painter, picker, hasKeyboard(picker));
    if (picker.state.testFlag(QStyle::State_MouseOver) && !picker.editable) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        QColor tint = hoverTint(picker.palette);
        tint.setAlphaF(tint.alphaF() / 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(QRectF(picker.rect), fieldRadius, fieldRadius);
        painter.restore();
    }
    QRect mark(QPoint(), chevron);
    mark.moveCenter(picker.rect.center());
    if (picker.direction == Qt::RightToLeft)
        mark.moveLeft(picker.rect.left() + chevronInset);
    else
        mark.moveRight(picker.rect.right() - chevronInset);
    QColor ink = secondaryText(picker.palette);
    if (groupOf(picker) == QPalette::Disabled)
        ink = faintText(picker.palette);
    painter.drawPixmap(mark.topLeft(), symbolPixmap(u"chevron.down"_s, chevron,
                                                    painter.device()->devicePixelRatioF(), ink));
}

void drawSlider(QPainter &painter, const QStyleOptionSlider &slider, const QRectF &handle)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool level = slider.orientation == Qt::Horizontal;
    const QRectF whole(slider.rect);
    QRectF groove = level ? QRectF(whole.left(), whole.center().y() - grooveWidth / 2,
                                   whole.width(), grooveWidth)
                          : QRectF(whole.center().x() - grooveWidth / 2, whole.top(), grooveWidth,
                                   whole.height());
    fillBar(painter, groove, hoverTint(slider.palette));
    if (level) {
        slider.upsideDown ? groove.setLeft(handle.center().x())
                          : groove.setRight(handle.center().x());
    } else {
        slider.upsideDown ? groove.setTop(handle.center().y())
                          : groove.setBottom(handle.center().y());
    }
    fillBar(painter, groove, accent(slider));

    if (hasKeyboard(slider)) {
        QColor halo = accent(slider);
        halo.setAlphaF(0.35f);
        painter.setBrush(halo);
        painter.drawEllipse(handle.adjusted(-3, -3, 3, 3).intersected(whole));
    }
    QColor rim = Qt::black;
    rim.setAlphaF(isDark(slider.palette) ? 0.45f : 0.22f);
    painter.setPen(QPen(rim, 1));
    painter.setBrush(slider.state.testFlag(QStyle::State_Sunken) ? QColor(0xEC, 0xED, 0xEF)
                                                                 : QColor(Qt::white));
    painter.drawEllipse(handle.adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

void drawProgress(QPainter &painter, const QStyleOptionProgressBar &bar)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF whole(bar.rect);
    whole =
        QRectF(whole.left(), whole.center().y() - progressWidth / 2, whole.width(), progressWidth);
    fillBar(painter, whole, hoverTint(bar.palette));
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    if (range > 0 && bar.progress > bar.minimum) {
        const qreal share = qreal(qint64(bar.progress) - bar.minimum) / qreal(range);
        whole.setWidth(std::max(progressWidth, whole.width() * share));
        fillBar(painter, whole, accent(bar));
    }
    painter.restore();
}

} // namespace nivora
