#include "double_shift_practice.h"

#include <QKeyEvent>

namespace nivora {

namespace {

// More forgiving than the trigger itself, whatever that is set to.
constexpr quint64 longestGap = 500; // milliseconds, exclusive

} // namespace

DoubleShiftPractice::DoubleShiftPractice(QObject *parent)
    : QObject(parent)
{
}

void DoubleShiftPractice::installShiftMonitor(QWindow &window)
{
    if (m_window)
        return;
    m_window = &window;
    window.installEventFilter(this);
}

void DoubleShiftPractice::removeShiftMonitor()
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window.clear();
    m_lastShiftAt.reset();
}

bool DoubleShiftPractice::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::KeyPress)
        handleShift(static_cast<const QKeyEvent &>(*event));
    return false;
}

// Other keys in between change nothing.
void DoubleShiftPractice::handleShift(const QKeyEvent &event)
{
    if (event.key() != Qt::Key_Shift || event.isAutoRepeat())
        return;
    // When the key was pressed, also if we come to it late.
    const quint64 now = event.timestamp();
    if (m_lastShiftAt && now - *m_lastShiftAt < longestGap) {
        removeShiftMonitor();
        Q_EMIT completed();
        return;
    }
    m_lastShiftAt = now;
}

} // namespace nivora
