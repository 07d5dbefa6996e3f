#include "platform_memory/memory_primary_selection.h"

namespace nivora::memory {

platform::Task MemoryPrimarySelectionReader::read(
    std::chrono::milliseconds deadline,
    std::function<void(std::optional<platform::PrimarySelection>)> done)
{
    ++m_reads;
    if (m_latency > deadline)
        return platform::delay(deadline, [done = std::move(done)] { done(std::nullopt); });
    return platform::delay(m_latency,
                           [selection = m_selection, done = std::move(done)] { done(selection); });
}

void MemoryPrimarySelectionReader::setSelection(std::optional<platform::PrimarySelection> selection)
{
    m_selection = std::move(selection);
}

} // namespace nivora::memory
