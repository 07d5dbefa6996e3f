#pragma once

#include "platform/settings_panes.h"

#include <vector>

namespace nivora::memory {

class MemorySettingsPanes final : public platform::SettingsPanes
{
public:
    bool open(platform::SettingsPane pane) override
    {
        m_opened.push_back(pane);
        return m_installed;
    }

    // Whether there is a settings program.
    void setInstalled(bool installed) { m_installed = installed; }
    const std::vector<platform::SettingsPane> &opened() const { return m_opened; }

private:
    bool m_installed = true;
    std::vector<platform::SettingsPane> m_opened;
};

} // namespace nivora::memory
