#pragma once

#include "platform/task.h"

#include <chrono>
#include <functional>

namespace nivora::platform {

// Whether somebody is at the machine.
class IdleMonitor
{
public:
    virtual ~IdleMonitor() = default;

    // Calls back once neither keyboard nor pointer has been touched for so long;
    // soon, where that is so already, and on a desktop that cannot tell.
    virtual Task whenIdle(std::chrono::milliseconds span, std::function<void()> done) = 0;
};

} // namespace nivora::platform
