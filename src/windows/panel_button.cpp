#include "panel_button.h"

#include "focus_ring.h"
#include "panel_button_accessible.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

namespace nivora {

namespace {

constexpr QSize symbolOnlySize(22, 18);
constexpr QSize symbolSize(14, 14);
constexpr int textPixels = 13;
constexpr int filledHeight = 26;
constexpr int plainHeight = 22;
constexpr int largeHeight = 34;
constexpr int plainPadding = 8;
constexpr int filledPadding = 12;
constexpr int gap = 4;
constexpr int largeGap = 8;
constexpr qreal radius = 5;

} // namespace

PanelButton::PanelButton(Look look, QWidget *parent)
    : QAbstractButton(parent)
    , m_look(look)
{
    makePanelButtonsAccessible(); // before anybody asks
    setFont(textFont(textPixels));
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PanelButton::setSymbol(const QString &name, SymbolPlace place)
{
    if (m_symbol == name && m_symbolPlace == place)
        return;
    m_symbol = name;
    m_symbolPlace = place;
    updateGeometry();
    update();
}

void PanelButton::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    update();
    if (m_kind == Kind::Toggle && QAccessible::isActive()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
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

void PanelButton::setLarge()
{
    m_large = true;
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    updateGeometry();
}

int PanelButton::sidePadding() const
{
    return m_look == Look::Plain ? plainPadding : filledPadding;
}

int PanelButton::contentWidth() const
{
    const int textWidth = fontMetrics().horizontalAdvance(text());
    if (m_symbol.isEmpty())
        return textWidth;
    return textWidth + (m_large ? largeGap : gap) + symbolSize.width();
}

QSize PanelButton::sizeHint() const
{
    if (text().isEmpty())
        return symbolOnlySize;
    const int height = m_look == Look::Plain ? plainHeight : filledHeight;
    return {contentWidth() + 2 * sidePadding(), m_large ? largeHeight : height};
}

// Gives the colour of what stands on it.
QColor PanelButton::paintGround(QPainter &painter) const
{
    const bool hovered = isEnabled() && underMouse();
    const auto fill = [&](const QColor &color, qreal corner) {
        painter.setBrush(color);
        painter.drawRoundedRect(rect(), corner, corner);
    };
    painter.setPen(Qt::NoPen);
    if (m_look == Look::Prominent) {
        QColor color = palette().color(QPalette::Highlight);
        if (!isEnabled())
            color.setAlphaF(0.35f);
        else if (isDown())
            color = color.darker(115);
        else if (hovered)
            color = color.lighter(108);
        fill(color, radius + 1);
        return palette().color(QPalette::HighlightedText);
    }
    if (m_look == Look::Secondary)
        fill(palette().color(QPalette::Button), radius + 1);
    if (hovered || m_active || isDown()) {
        QColor tint = hoverTint(palette());
        if (isDown())
            tint.setAlphaF(tint.alphaF() * 1.6f);
        fill(tint, m_look == Look::Secondary ? radius + 1 : radius);
    }
    return palette().color(isEnabled() && !m_dimmed ? QPalette::Active : QPalette::Disabled,
                           QPalette::WindowText);
}

void PanelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = paintGround(painter);
    if (hasFocus() && m_ring) {
        // On the fill of the prominent look the ring's own colour would not show.
        QPalette ring = palette();
        if (m_look == Look::Prominent)
            ring.setColor(QPalette::Highlight, ring.color(QPalette::WindowText));
        drawFocusRing(painter, rect(), ring);
    }

    painter.setPen(ink);
    painter.setFont(font());
    QRectF symbolFrame(QPointF(), symbolSize);
    symbolFrame.moveCenter(QRectF(rect()).center());
    if (!text().isEmpty()) {
        const QRect content((width() - contentWidth()) / 2, 0, contentWidth(), height());
        const bool symbolFirst = !m_symbol.isEmpty() && m_symbolPlace == SymbolPlace::BeforeText;
        symbolFirst ? symbolFrame.moveLeft(content.left())
                    : symbolFrame.moveRight(content.right() + 1);
        painter.drawText(content,
                         (symbolFirst ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter |
                             Qt::TextHideMnemonic,
                         text());
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
    m_ring = wantsRing(*event, m_ring);
    QAbstractButton::focusInEvent(event);
}

} // namespace nivora
