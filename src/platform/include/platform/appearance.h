#pragma once

#include "platform/task.h"

#include <functional>
#include <optional>

namespace nivora::platform {

// What the user has chosen for all programs of the desktop.
struct DesktopAppearance
{
    std::optional<bool> prefersDark; // absent: no wish either way
    bool reducedMotion = false;

    bool operator==(const DesktopAppearance &) const = default;
};

class Appearance
{
public:
    virtual ~Appearance() = default;

    // Tells of the desktop's choice as soon as it is known, and then of each
    // change, for as long as the task lives. Says nothing on a desktop that does
    // not tell its choice.
    virtual Task watch(std::function<void(const DesktopAppearance &)> changed) = 0;
};

} // namespace nivora::platform
