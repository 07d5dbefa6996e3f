#pragma once

#include "platform/tray_hosts.h"

namespace nivora::memory {

// A desktop without a tray.
class MemoryTrayHosts final : public platform::TrayHosts
{
public:
    platform::Task watch(std::function<void(bool)> changed) override
    {
        return platform::delay({}, [changed = std::move(changed)] { changed(false); });
    }
};

} // namespace nivora::memory
