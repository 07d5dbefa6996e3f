#include "windows/floating_panel.h"

#include "windows/theme.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr qreal cornerRadius = 10; // logical pixels

} // namespace

FloatingPanel::FloatingPanel(QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowRole(u"panel"_s);
    setWindowTitle(u"Nivora"_s);
}

void FloatingPanel::setBlended(bool blended)
{
    if (m_blended == blended)
        return;
    m_blended = blended;
    update();
}

bool FloatingPanel::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::WindowDeactivate && isVisible())
        Q_EMIT resignedKey();
    return handled;
}

void FloatingPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        Q_EMIT cancelled();
    else
        QWidget::keyPressEvent(event);
}

void FloatingPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor line = hairline(palette());
    // The hairline lies on the fill, and the fill must not shine through it.
    if (!m_blended) {
        painter.fillRect(rect(), palette().color(QPalette::Window));
        painter.setPen(line);
        painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
}

} // namespace nivora
