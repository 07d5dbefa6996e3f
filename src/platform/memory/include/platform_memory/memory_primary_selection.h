#pragma once

#include "platform/primary_selection.h"

namespace nivora::memory {

class MemoryPrimarySelectionReader final : public platform::PrimarySelectionReader
{
public:
    platform::Task
    read(std::chrono::milliseconds deadline,
         std::function<void(std::optional<platform::PrimarySelection>)> done) override;

    void setSelection(std::optional<platform::PrimarySelection> selection);
    // How long the owner takes. Beyond a read's deadline the answer is absent.
    void setLatency(std::chrono::milliseconds latency) { m_latency = latency; }
    int reads() const { return m_reads; }

private:
    std::optional<platform::PrimarySelection> m_selection;
    std::chrono::milliseconds m_latency{0};
    int m_reads = 0;
};

} // namespace nivora::memory
