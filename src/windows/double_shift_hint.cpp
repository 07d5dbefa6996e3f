#include "double_shift_hint.h"

#include "motion.h"
#include "symbol.h"
#include "windows/theme.h"

#include <QEasingCurve>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Logical pixels.
constexpr QSizeF keySize(108, 56);
constexpr qreal keyRadius = 12;
constexpr qreal lip = 3; // of the key's side that can be seen below it
constexpr QSize symbolSize(20, 20);
constexpr int textPixels = 17;
constexpr int gap = 8;

constexpr qreal pressedScale = 0.93;
constexpr qreal pressedDrop = 2;
constexpr qreal rippleScale = 1.55; // where it has faded away
constexpr qreal rippleOpacity = 0.5;
constexpr qreal rippleWidth = 2;

constexpr auto pressSpan = 100ms;
constexpr auto releaseSpan = 200ms;
constexpr auto restSpan = 950ms;
constexpr auto frameSpan = 16ms;
constexpr double springDamping = 0.55;

std::chrono::milliseconds spanOf(DoubleShiftHint::Phase phase)
{
    using enum DoubleShiftHint::Phase;
    switch (phase) {
    case Down1:
    case Down2:
        return pressSpan;
    case Up1:
    case Up2:
        return releaseSpan;
    case Rest:
        break;
    }
    return restSpan;
}

double seconds(std::chrono::duration<double> span)
{
    return span.count();
}

void paintKey(QPainter &painter, const QRectF &key, const QPalette &palette)
{
    const bool dark = isDark(palette);
    const QColor side = dark ? QColor(0x18, 0x19, 0x1C) : QColor(0xD5, 0xD8, 0xDE);
    const QColor top = dark ? palette.color(QPalette::Button) : palette.color(QPalette::Base);
    painter.setPen(QPen(hairline(palette), 1));
    painter.setBrush(side);
    painter.drawRoundedRect(key.adjusted(0.5, 0.5 + lip, -0.5, -0.5 + lip), keyRadius, keyRadius);
    painter.setBrush(top);
    painter.drawRoundedRect(key.adjusted(0.5, 0.5, -0.5, -0.5), keyRadius, keyRadius);

    QFont font = textFont(textPixels);
    font.setWeight(QFont::Medium);
    const QString text = u"Shift"_s;
    const int textWidth = QFontMetrics(font).horizontalAdvance(text);
    const QColor ink = palette.color(QPalette::WindowText);
    QRectF content(0, 0, symbolSize.width() + gap + textWidth, key.height());
    content.moveCenter(key.center());
    const QPointF symbolPlace(std::round(content.left()),
                              std::round(key.center().y() - symbolSize.height() / 2.0));
    painter.drawPixmap(symbolPlace, symbolPixmap(u"shift"_s, symbolSize,
                                                 painter.device()->devicePixelRatioF(), ink));
    painter.setPen(ink);
    painter.setFont(font);
    painter.drawText(content, Qt::AlignRight | Qt::AlignVCenter, text);
}

} // namespace

DoubleShiftHint::DoubleShiftHint(QWidget *parent)
    : QWidget(parent)
{
    constexpr QSizeF whole = keySize * rippleScale;
    setFixedSize(qCeil(whole.width()) + 4, qCeil(whole.height()) + 4);
}

double DoubleShiftHint::pressure(Phase phase, double since)
{
    switch (phase) {
    case Phase::Down1:
    case Phase::Down2:
        return QEasingCurve(QEasingCurve::InQuad).valueForProgress(since / seconds(pressSpan));
    case Phase::Up1:
    case Phase::Up2:
        return 1 - springProgress(since, seconds(releaseSpan), springDamping);
    case Phase::Rest:
        break;
    }
    return 0;
}

void DoubleShiftHint::begin(Phase phase)
{
    m_phase = phase;
    m_sincePhase.start();
    // At rest there is nothing to draw before it ends.
    const auto period = phase == Phase::Rest ? restSpan : frameSpan;
    m_timer.start(int(period.count()), Qt::PreciseTimer, this);
    update();
}

void DoubleShiftHint::showEvent(QShowEvent *)
{
    begin(Phase::Rest);
}

void DoubleShiftHint::hideEvent(QHideEvent *)
{
    m_timer.stop();
}

void DoubleShiftHint::timerEvent(QTimerEvent *)
{
    // The desktop may tell its wish only after the window has opened.
    if (!wantsMotion(*this)) {
        m_phase = Phase::Rest;
        m_timer.stop();
    } else if (std::chrono::milliseconds(m_sincePhase.elapsed()) >= spanOf(m_phase)) {
        begin(m_phase == Phase::Rest ? Phase::Down1 : Phase(int(m_phase) + 1));
    }
    update();
}

void DoubleShiftHint::paintEvent(QPaintEvent *)
{
    const auto since = std::chrono::duration<double>(
        std::chrono::milliseconds(m_sincePhase.isValid() ? m_sincePhase.elapsed() : 0));
    const double pressed = pressure(m_phase, since.count());
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QRectF key(QPointF(), keySize);
    key.moveCenter(QRectF(rect()).center());

    if (const double opacity = rippleOpacity * std::clamp(pressed, 0.0, 1.0); opacity > 0.004) {
        const qreal scale = rippleScale + (1 - rippleScale) * pressed;
        QRectF ripple(QPointF(), keySize * scale);
        ripple.moveCenter(key.center());
        painter.setOpacity(opacity);
        painter.setPen(QPen(palette().color(QPalette::Highlight), rippleWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(ripple, keyRadius * scale, keyRadius * scale);
        painter.setOpacity(1);
    }

    const qreal scale = 1 + (pressedScale - 1) * pressed;
    painter.translate(key.center() + QPointF(0, pressedDrop * pressed));
    painter.scale(scale, scale);
    painter.translate(-key.center());
    paintKey(painter, key, palette());
}

} // namespace nivora
