#include "settings_tab_bar.h"

#include "focus_ring.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QFocusEvent>
#include <QHoverEvent>
#include <QPainter>

#include <algorithm>

namespace nivora {

namespace {

// Logical pixels.
constexpr int textPixels = 12;
constexpr QSize symbolSize(22, 22);
constexpr QSize leastTab(86, 56);
constexpr int sidePadding = 12;
constexpr int symbolTop = 8;
constexpr int textBottom = 7;
constexpr int gap = 3; // on either side of a tab
constexpr qreal radius = 8;

} // namespace

SettingsTabBar::SettingsTabBar(QWidget *parent)
    : QTabBar(parent)
{
    setFont(textFont(textPixels));
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SettingsTabBar::add(const QString &label, const QString &symbol)
{
    m_symbols << symbol;
    addTab(label);
}

QSize SettingsTabBar::tabSizeHint(int index) const
{
    const int width = fontMetrics().horizontalAdvance(tabText(index)) + 2 * sidePadding;
    return {std::max(width, leastTab.width()) + 2 * gap, leastTab.height()};
}

void SettingsTabBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    for (int index = 0; index < count(); ++index) {
        const QRect tab = tabRect(index).adjusted(gap, 0, -gap, 0);
        const bool isCurrent = index == currentIndex();
        if (isCurrent || index == m_hovered) {
            QColor ground = hoverTint(palette());
            ground.setAlphaF(ground.alphaF() * (isCurrent ? 0.75f : 0.4f));
            painter.setPen(Qt::NoPen);
            painter.setBrush(ground);
            painter.drawRoundedRect(QRectF(tab), radius, radius);
        }
        const QColor ink =
            isCurrent ? palette().color(QPalette::Highlight) : secondaryText(palette());
        const QPoint place(tab.center().x() + 1 - symbolSize.width() / 2, tab.top() + symbolTop);
        painter.drawPixmap(place,
                           symbolPixmap(m_symbols[index], symbolSize, devicePixelRatioF(), ink));
        painter.setPen(isCurrent ? palette().color(QPalette::WindowText) : ink);
        painter.drawText(tab.adjusted(0, 0, 0, -textBottom), Qt::AlignHCenter | Qt::AlignBottom,
                         tabText(index));
        if (isCurrent && hasFocus() && m_ring)
            drawFocusRing(painter, tab, palette());
    }
}

bool SettingsTabBar::event(QEvent *event)
{
    const int before = m_hovered;
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter)
        m_hovered = tabAt(static_cast<QHoverEvent *>(event)->position().toPoint());
    else if (event->type() == QEvent::HoverLeave)
        m_hovered = -1;
    if (m_hovered != before)
        update();
    return QTabBar::event(event);
}

void SettingsTabBar::focusInEvent(QFocusEvent *event)
{
    m_ring = wantsRing(*event, m_ring);
    QTabBar::focusInEvent(event);
}

} // namespace nivora
