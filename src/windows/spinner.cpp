#include "spinner.h"

#include "motion.h"
#include "windows/theme.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>

using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto frameSpan = 50ms; // fast enough for so small a ring
constexpr int stepsPerTurn = 18;
constexpr qreal penWidth = 1.6;

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *spinner = qobject_cast<Spinner *>(object);
    return spinner ? new QAccessibleWidget(spinner, QAccessible::Animation) : nullptr;
}

} // namespace

Spinner::Spinner(int side, QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(makeAccessible); // before anybody asks
    setFixedSize(side, side);
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(rect()).adjusted(penWidth, penWidth, -penWidth, -penWidth);
    painter.setPen(QPen(hairline(palette()), penWidth));
    painter.drawEllipse(ring);
    painter.setPen(QPen(secondaryText(palette()), penWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, -m_step * 360 * 16 / stepsPerTurn, 100 * 16);
}

void Spinner::showEvent(QShowEvent *)
{
    // A ring that stands still says as much to those who want no motion.
    if (wantsMotion(*this))
        m_timer.start(frameSpan.count(), this);
}

void Spinner::hideEvent(QHideEvent *)
{
    m_timer.stop();
}

void Spinner::timerEvent(QTimerEvent *)
{
    m_step = (m_step + 1) % stepsPerTurn;
    update();
}

} // namespace nivora
