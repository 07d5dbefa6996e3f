#include "page_fade.h"

#include "motion.h"

#include <QPainter>

namespace nivora {

PageFade::PageFade(QWidget *pages)
    : QWidget(pages)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    m_opacity.setStartValue(1.0);
    m_opacity.setEndValue(0.0);
    m_opacity.setDuration(stepSpan.count());
    m_opacity.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_opacity, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&m_opacity, &QVariantAnimation::finished, this, [this] {
        hide();
        m_before = {};
    });
}

void PageFade::begin(const QPixmap &before)
{
    m_before = before;
    setGeometry(parentWidget()->rect());
    show();
    raise();
    m_opacity.start();
}

void PageFade::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(m_opacity.currentValue().toReal());
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.drawPixmap(0, 0, m_before);
}

} // namespace nivora
