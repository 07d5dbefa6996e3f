#pragma once

#include "platform/appearance.h"

#include <memory>

namespace nivora::memory {

class MemoryAppearance final : public platform::Appearance
{
public:
    platform::Task watch(std::function<void(const platform::DesktopAppearance &)> changed) override;

    // The user's choice from now on. Nothing is told before the first.
    void set(const platform::DesktopAppearance &appearance);

private:
    class Watch;

    std::optional<platform::DesktopAppearance> m_now;
    std::shared_ptr<Watch *> m_watch; // the last that was started
};

} // namespace nivora::memory
