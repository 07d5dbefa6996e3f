#include "platform_memory/memory_window_system.h"

namespace nivora::memory {

bool MemoryWindowSystem::hasInputFocus(platform::WindowId window) const
{
    return m_focusArrived && m_active && m_active->id == window;
}

void MemoryWindowSystem::requestActivation(platform::WindowId window)
{
    m_requests.push_back(window);
    if (m_activatable && m_activatable->id == window)
        setActiveWindow(m_activatable);
}

platform::Task MemoryWindowSystem::isResponding(platform::WindowId,
                                                std::chrono::milliseconds deadline,
                                                std::function<void(bool)> done) const
{
    return platform::delay(m_responding ? std::chrono::milliseconds::zero() : deadline,
                           [this, done = std::move(done)] { done(m_responding); });
}

void MemoryWindowSystem::setActiveWindow(std::optional<platform::ForeignWindow> window)
{
    m_active = std::move(window);
    m_focusArrived = true;
}

} // namespace nivora::memory
