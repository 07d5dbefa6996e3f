#include "overlay_window.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace nivora::screencapture {

namespace {

// Menus that are just closing let go within this.
constexpr int grabLimit = 1500;     // milliseconds
constexpr int grabRetryPeriod = 30; // milliseconds

constexpr int coarseStep = 10; // logical pixels

const QColor dimming(0, 0, 0, 110);

QImage dimmed(QImage picture)
{
    QPainter painter(&picture);
    painter.fillRect(picture.rect(), dimming);
    return picture;
}

} // namespace

OverlayWindow::OverlayWindow(const FrozenScreens &screens, double scale)
    : m_screens(screens)
    , m_dimmed(dimmed(screens.picture))
    , m_scale(scale)
    , m_decoration(scale)
    , m_selection(QRect({0, 0}, screens.area.size()))
{
    setFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
    setTitle(QCoreApplication::translate("ScreenCapture", "截图翻译"));
    setGeometry(m_screens.area);
    setCursor(Qt::CrossCursor);
    m_selection.movePointer(QCursor::pos() - m_screens.area.topLeft());
}

void OverlayWindow::begin()
{
    show();
    m_sinceBegin.start();
    if (!takeInput())
        m_grabRetry.start(grabRetryPeriod, this);
}

bool OverlayWindow::takeInput()
{
    // One without the other is given back: half a grab would lock the user out.
    if (setKeyboardGrabEnabled(true)) {
        if (setMouseGrabEnabled(true))
            return true;
        setKeyboardGrabEnabled(false);
    }
    return false;
}

void OverlayWindow::release()
{
    m_grabRetry.stop();
    setMouseGrabEnabled(false);
    setKeyboardGrabEnabled(false);
    hide();
}

void OverlayWindow::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_grabRetry.timerId())
        return QRasterWindow::timerEvent(event);
    if (takeInput()) {
        m_grabRetry.stop();
    } else if (m_sinceBegin.hasExpired(grabLimit)) {
        release();
        Q_EMIT grabFailed();
    }
}

void OverlayWindow::take()
{
    const QImage picture = m_screens.picture.copy(m_selection.region());
    release();
    Q_EMIT chosen(picture);
}

void OverlayWindow::cancel()
{
    release();
    Q_EMIT cancelled();
}

// With the keyboard: one corner, then the other.
void OverlayWindow::confirm()
{
    if (!m_selection.hasCorner())
        repaintAfter([&] { m_selection.setCorner(); });
    else if (m_selection.isWorthTaking())
        take();
}

template<typename Change>
void OverlayWindow::repaintAfter(Change &&change)
{
    const QRegion before = m_decoration.extent(m_selection, screenBelowPointer());
    change();
    update(before + m_decoration.extent(m_selection, screenBelowPointer()));
}

void OverlayWindow::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setClipRegion(event->region());
    for (const QRect &part : event->region())
        painter.drawImage(part.topLeft(), m_dimmed, part);
    m_decoration.paint(painter, m_selection, screenBelowPointer(), m_screens.picture);
}

void OverlayWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        cancel();
    } else if (event->button() == Qt::LeftButton) {
        repaintAfter([&] {
            m_buttonHeld = true;
            m_selection.movePointer(event->position().toPoint());
            m_selection.setCorner();
        });
    }
}

void OverlayWindow::mouseMoveEvent(QMouseEvent *event)
{
    repaintAfter([&] { m_selection.movePointer(event->position().toPoint()); });
}

void OverlayWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_buttonHeld)
        return;
    m_buttonHeld = false;
    repaintAfter([&] { m_selection.movePointer(event->position().toPoint()); });
    if (m_selection.isWorthTaking())
        return take();
    repaintAfter([&] { m_selection.dropCorner(); });
}

void OverlayWindow::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        cancel();
        break;
    case Qt::Key_Left:
        nudge({-1, 0}, event->modifiers());
        break;
    case Qt::Key_Right:
        nudge({1, 0}, event->modifiers());
        break;
    case Qt::Key_Up:
        nudge({0, -1}, event->modifiers());
        break;
    case Qt::Key_Down:
        nudge({0, 1}, event->modifiers());
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            confirm();
        break;
    case Qt::Key_Space:
        m_selection.setHeldAsWhole(true);
        break;
    default:
        break;
    }
}

void OverlayWindow::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        m_selection.setHeldAsWhole(false);
}

void OverlayWindow::nudge(const QPoint &direction, Qt::KeyboardModifiers modifiers)
{
    const int step =
        modifiers.testFlag(Qt::ShiftModifier) ? 1 : int(std::lround(coarseStep * m_scale));
    repaintAfter([&] { m_selection.movePointer(m_selection.pointer() + direction * step); });
    // The mouse goes on from here.
    QCursor::setPos(m_selection.pointer() + m_screens.area.topLeft());
}

QRect OverlayWindow::screenBelowPointer() const
{
    const QPoint at = m_selection.pointer() + m_screens.area.topLeft();
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen->geometry().contains(at))
            return screen->geometry().translated(-m_screens.area.topLeft());
    }
    return QRect({0, 0}, m_screens.area.size());
}

} // namespace nivora::screencapture
