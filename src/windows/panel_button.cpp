#include "panel_button.h"

#include "focus_ring.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace nivora {

namespace {

constexpr QSize symbolOnlySize(22, 18);
constexpr QSize symbolSize(14, 14);
constexpr int textPixels = 13;
constexpr int prominentHeight = 26;
constexpr int plainHeight = 22;
constexpr int sidePadding = 8;
constexpr int prominentPadding = 12;
constexpr int gap = 4;
constexpr qreal radius = 5;

} // namespace

PanelButton::PanelButton(Look look, QWidget *parent)
    : QAbstractButton(parent)
    , m_look(look)
{
    setFont(textFont(textPixels));
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PanelButton::setSymbol(const QString &name)
{
    if (m_symbol == name)
        return;
    m_symbol = name;
    updateGeometry();
    update();
}

void PanelButton::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    update();
}

void PanelButton::setDimmed(bool dimmed)
{
    if (m_dimmed == dimmed)
        return;
    m_dimmed = dimmed;
    update();
}

void PanelButton::setHint(const QString &hint)
{
    setToolTip(hint);
    setAccessibleName(hint);
}

QSize PanelButton::sizeHint() const
{
    if (text().isEmpty())
        return symbolOnlySize;
    const bool prominent = m_look == Look::Prominent;
    int width =
        fontMetrics().horizontalAdvance(text()) + 2 * (prominent ? prominentPadding : sidePadding);
    if (!m_symbol.isEmpty())
        width += gap + symbolSize.width();
    return {width, prominent ? prominentHeight : plainHeight};
}

void PanelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF frame = rect();
    const bool hovered = isEnabled() && underMouse();
    QColor ink = palette().color(isEnabled() && !m_dimmed ? QPalette::Active : QPalette::Disabled,
                                 QPalette::WindowText);

    if (m_look == Look::Prominent) {
        QColor fill = palette().color(QPalette::Highlight);
        if (!isEnabled())
            fill.setAlphaF(0.35f);
        else if (isDown())
            fill = fill.darker(115);
        else if (hovered)
            fill = fill.lighter(108);
        painter.setBrush(fill);
        painter.drawRoundedRect(frame, radius + 1, radius + 1);
        ink = palette().color(QPalette::HighlightedText);
    } else if (hovered || m_active || isDown()) {
        QColor tint = hoverTint(palette());
        if (isDown())
            tint.setAlphaF(tint.alphaF() * 1.6f);
        painter.setBrush(tint);
        painter.drawRoundedRect(frame, radius, radius);
    }

    if (hasFocus() && m_ring) {
        // On the fill of the prominent look the ring's own colour would not show.
        QPalette ring = palette();
        if (m_look == Look::Prominent)
            ring.setColor(QPalette::Highlight, ring.color(QPalette::WindowText));
        drawFocusRing(painter, frame, ring);
    }

    painter.setPen(ink);
    painter.setFont(font());
    QRectF symbolFrame(QPointF(), symbolSize);
    symbolFrame.moveCenter(frame.center());
    if (!text().isEmpty()) {
        const int padding = m_look == Look::Prominent ? prominentPadding : sidePadding;
        const QRectF textFrame = frame.adjusted(padding, 0, -padding, 0);
        painter.drawText(textFrame, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic,
                         text());
        symbolFrame.moveRight(textFrame.right());
    }
    if (!m_symbol.isEmpty()) {
        painter.drawPixmap(symbolFrame.topLeft(),
                           symbolPixmap(m_symbol, symbolSize, devicePixelRatioF(), ink));
    }
}

void PanelButton::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !(event->modifiers() & ~Qt::KeypadModifier))
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void PanelButton::focusInEvent(QFocusEvent *event)
{
    m_ring = isFromKeyboard(*event);
    QAbstractButton::focusInEvent(event);
}

} // namespace nivora
