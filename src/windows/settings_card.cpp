#include "settings_card.h"

#include "windows/theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace nivora {

namespace {

// Logical pixels.
constexpr qreal cornerRadius = 9;
constexpr int lineInset = 14;

} // namespace

SettingsCard::SettingsCard(QWidget *parent)
    : QWidget(parent)
    , m_column(new QVBoxLayout(this))
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
}

QColor SettingsCard::tint(const QPalette &palette)
{
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(isDark(palette) ? 0.045f : 0.028f);
    return color;
}

void SettingsCard::addRow(QWidget *row, bool hasLine)
{
    m_column->addWidget(row);
    if (hasLine)
        m_lined.append(row);
}

void SettingsCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor line = hairline(palette());
    line.setAlphaF(line.alphaF() * 0.75f);
    painter.setPen(line);
    painter.setBrush(tint(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
    bool isFirst = true;
    for (const QWidget *row : std::as_const(m_lined)) {
        if (row->isHidden() || std::exchange(isFirst, false))
            continue;
        const qreal y = row->y() + 0.5;
        painter.drawLine(QPointF(lineInset, y), QPointF(width() - lineInset, y));
    }
}

} // namespace nivora
