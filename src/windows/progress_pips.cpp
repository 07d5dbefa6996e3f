#include "progress_pips.h"

#include "motion.h"
#include "windows/theme.h"

#include <QPainter>

namespace nivora {

namespace {

// Logical pixels.
constexpr int pipHeight = 7;
constexpr qreal pipWidth = 7;
constexpr qreal currentPipWidth = 20;
constexpr qreal gap = 6;

QColor blend(const QColor &from, const QColor &to, qreal share)
{
    const auto part = [share](float a, float b) { return float(a + (b - a) * share); };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()), part(from.alphaF(), to.alphaF()));
}

} // namespace

ProgressPips::ProgressPips(int count, QWidget *parent)
    : QWidget(parent)
    , m_count(count)
{
    setFixedSize(qCeil((count - 1) * (pipWidth + gap) + currentPipWidth), pipHeight);
    m_way.setStartValue(0.0);
    m_way.setEndValue(1.0);
    m_way.setDuration(stepSpan.count());
    m_way.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_way, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void ProgressPips::setCurrent(int step)
{
    m_previous = std::exchange(m_current, step);
    setAccessibleName(tr("第 %1 步，共 %2 步").arg(m_current + 1).arg(m_count));
    if (wantsMotion(*this) && isVisible())
        m_way.start();
    else
        m_way.stop();
    update();
}

void ProgressPips::paintEvent(QPaintEvent *)
{
    const bool moving = m_way.state() == QAbstractAnimation::Running;
    const qreal share = moving ? m_way.currentValue().toReal() : 1;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QRectF pip(0, 0, 0, pipHeight);
    for (int step = 0; step < m_count; ++step) {
        qreal weight = 0;
        if (step == m_current)
            weight = share;
        else if (step == m_previous)
            weight = 1 - share;
        pip.setWidth(pipWidth + (currentPipWidth - pipWidth) * weight);
        painter.setBrush(blend(hairline(palette()), palette().color(QPalette::Highlight), weight));
        painter.drawRoundedRect(pip, pipHeight / 2.0, pipHeight / 2.0);
        pip.moveLeft(pip.right() + gap);
    }
}

} // namespace nivora
