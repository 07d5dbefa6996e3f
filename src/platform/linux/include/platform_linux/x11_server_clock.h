#pragma once

#include <chrono>
#include <cstdint>

namespace nivora::linuxdesktop {

// The X server stamps events with 32 bits of milliseconds, which wrap around
// after 49.7 days. This clock counts on across that.
class X11ServerClock
{
public:
    // The time of an event on a clock that only grows: an event that comes out
    // of order gets the time of the latest one.
    std::chrono::milliseconds widen(uint32_t stamp)
    {
        const auto step = static_cast<int32_t>(stamp - static_cast<uint32_t>(m_latest));
        if (!m_started || step > 0)
            m_latest = m_started ? m_latest + step : stamp;
        m_started = true;
        return std::chrono::milliseconds(m_latest);
    }

private:
    bool m_started = false;
    int64_t m_latest = 0;
};

} // namespace nivora::linuxdesktop
