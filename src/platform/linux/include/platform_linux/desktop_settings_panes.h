#pragma once

#include "platform/settings_panes.h"

namespace nivora::linuxdesktop {

// The settings programs of GNOME, KDE Plasma and Xfce, the running desktop's own
// first.
class DesktopSettingsPanes final : public platform::SettingsPanes
{
public:
    bool open(platform::SettingsPane pane) override;
};

} // namespace nivora::linuxdesktop
