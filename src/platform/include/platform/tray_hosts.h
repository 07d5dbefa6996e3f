#pragma once

#include "platform/task.h"

#include <functional>

namespace nivora::platform {

// The programs that show tray icons: panels, docks and bars.
class TrayHosts
{
public:
    virtual ~TrayHosts() = default;

    // Tells whether one is there, as soon as it is known and at each change. Says
    // nothing while somebody who may be one does not answer: to show an icon would
    // mean to wait for it.
    virtual Task watch(std::function<void(bool present)> changed) = 0;
};

} // namespace nivora::platform
