#include "desktop/hot_key_monitor.h"

namespace nivora {

bool HotKeyMonitor::start()
{
    if (!m_started)
        m_started = m_tap.start([this](const platform::KeyEvent &event) { handle(event); });
    return m_started;
}

void HotKeyMonitor::handle(const platform::KeyEvent &event)
{
    using platform::KeyEvent;
    switch (event.kind) {
    case KeyEvent::Kind::Interrupted:
        return;
    case KeyEvent::Kind::KeyDown:
        m_lastShiftDown.reset();
        return;
    case KeyEvent::Kind::ModifiersChanged:
        break;
    }
    if (event.key == KeyEvent::Key::Other) {
        m_lastShiftDown.reset();
        return;
    }
    if (!event.shiftHeld)
        return;
    if (!m_lastShiftDown || double((event.time - *m_lastShiftDown).count()) > thresholdMs) {
        m_lastShiftDown = event.time;
        return;
    }
    m_lastShiftDown.reset();
    if (onDoubleShift)
        onDoubleShift();
}

} // namespace nivora
