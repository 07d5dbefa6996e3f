#pragma once

#include "platform/keys.h"

#include <chrono>
#include <functional>
#include <optional>

namespace nivora {

// Recognises two taps of a Shift key, either of the two, without another key in
// between. Main thread only.
class HotKeyMonitor
{
public:
    explicit HotKeyMonitor(platform::KeyEventTap &tap)
        : m_tap(tap)
    {
    }

    // Called once for each double tap.
    std::function<void()> onDoubleShift;

    // The longest gap from press to press, in milliseconds; the next event sees
    // a new value.
    double thresholdMs = 300.0;

    // True if key events arrive from now on. Further calls do nothing.
    bool start();

private:
    void handle(const platform::KeyEvent &event);

    platform::KeyEventTap &m_tap;
    bool m_started = false;
    // When the pending first press was; absent while idle.
    std::optional<std::chrono::milliseconds> m_lastShiftDown;
};

} // namespace nivora
