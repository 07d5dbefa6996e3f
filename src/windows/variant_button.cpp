#include "variant_button.h"

#include "focus_ring.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QKeyEvent>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr QMargins padding(8, 5, 8, 5);
constexpr QSize symbolSize(14, 14);
constexpr int gap = 6;
constexpr int textLeft = padding.left() + symbolSize.width() + gap;
constexpr qreal radius = 6;

} // namespace

VariantButton::VariantButton(const QString &variant, const QFont &font, QWidget *parent)
    : QAbstractButton(parent)
    , m_variant(variant)
{
    setFont(font);
    m_flow.setFont(font);
    m_flow.append(variant);
    setAccessibleName(variant);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
}

int VariantButton::layOut(int width)
{
    m_flow.setWidth(width - textLeft - padding.right());
    m_flow.layOut(QDeadlineTimer::Forever);
    return m_flow.height() + padding.top() + padding.bottom();
}

QSize VariantButton::sizeHint() const
{
    return size();
}

void VariantButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor tint = hoverTint(palette());
    if (!underMouse() && !isDown())
        tint.setAlphaF(tint.alphaF() / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawRoundedRect(rect(), radius, radius);
    // Beside the first line.
    const qreal middle = padding.top() + m_flow.caretAt(0).center().y();
    painter.drawPixmap(QPointF(padding.left(), std::round(middle - symbolSize.height() / 2.0)),
                       symbolPixmap(u"arrow.turn.down.right"_s, symbolSize, devicePixelRatioF(),
                                    secondaryText(palette())));
    painter.translate(textLeft, padding.top());
    m_flow.draw(painter, rect(), palette().color(QPalette::WindowText), {}, palette());
    painter.resetTransform();
    if (hasFocus() && m_ring)
        drawFocusRing(painter, rect(), palette());
}

void VariantButton::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !(event->modifiers() & ~Qt::KeypadModifier))
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void VariantButton::focusInEvent(QFocusEvent *event)
{
    m_ring = wantsRing(*event, m_ring);
    QAbstractButton::focusInEvent(event);
}

} // namespace nivora
