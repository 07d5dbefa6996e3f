#pragma once

#include "platform/idle_monitor.h"

#include <memory>

namespace nivora::memory {

// Somebody types without a pause, until told otherwise.
class MemoryIdleMonitor final : public platform::IdleMonitor
{
public:
    platform::Task whenIdle(std::chrono::milliseconds span, std::function<void()> done) override;

    // Nobody has touched anything for long.
    void leave() { *m_away = true; }

private:
    std::shared_ptr<bool> m_away = std::make_shared<bool>(false);
};

} // namespace nivora::memory
