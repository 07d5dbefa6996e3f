#pragma once

#include "platform/appearance.h"

namespace nivora::linuxdesktop {

// The desktop portal's settings on the session bus. The portal is asked without
// waiting for it; one that does not answer within two seconds, or is not
// installed, says nothing until it reports a change.
class PortalAppearance final : public platform::Appearance
{
public:
    platform::Task watch(std::function<void(const platform::DesktopAppearance &)> changed) override;
};

} // namespace nivora::linuxdesktop
