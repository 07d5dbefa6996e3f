#include "desktop/permissions_manager.h"

#include "platform/settings_panes.h"

namespace nivora {

bool PermissionsManager::openAccessibilitySettings()
{
    return m_panes.open(platform::SettingsPane::Accessibility);
}

bool PermissionsManager::openScreenRecordingSettings()
{
    return m_panes.open(platform::SettingsPane::ScreenRecording);
}

} // namespace nivora
