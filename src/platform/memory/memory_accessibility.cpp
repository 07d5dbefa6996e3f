#include "platform_memory/memory_accessibility.h"

namespace nivora::memory {

using namespace std::chrono_literals;

void MemoryAccessibility::requestTrust()
{
    ++m_trustRequests;
    m_trusted = m_trusted || m_grantsTrust;
}

platform::Task MemoryAccessibility::readFocusedElement(
    std::function<void(std::optional<platform::FocusedElement>)> done)
{
    ++m_reads;
    constexpr auto deadline = 300ms;
    if (m_latency > deadline)
        return platform::delay(deadline, [done = std::move(done)] { done(std::nullopt); });
    return platform::delay(
        m_latency, [this, done = std::move(done)] { done(m_trusted ? m_element : std::nullopt); });
}

bool MemoryAccessibility::requestExposure(qint64 processId)
{
    m_exposureRequests.push_back(processId);
    if (m_exposes && m_exposed)
        m_exposed();
    return m_exposes;
}

void MemoryAccessibility::setElement(std::optional<platform::FocusedElement> element)
{
    m_element = std::move(element);
}

void MemoryAccessibility::setExposure(bool answers, std::function<void()> exposed)
{
    m_exposes = answers;
    m_exposed = std::move(exposed);
}

} // namespace nivora::memory
