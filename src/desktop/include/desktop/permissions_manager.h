#pragma once

namespace nivora {

namespace platform {
class SettingsPanes;
}

// Brings the desktop's settings within reach when a permission is missing.
class PermissionsManager
{
public:
    explicit PermissionsManager(platform::SettingsPanes &panes)
        : m_panes(panes)
    {
    }

    // False when this desktop has no settings program that is known.
    bool openAccessibilitySettings();
    bool openScreenRecordingSettings();

private:
    platform::SettingsPanes &m_panes;
};

} // namespace nivora
