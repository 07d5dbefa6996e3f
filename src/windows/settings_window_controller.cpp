#include "windows/settings_window_controller.h"

#include "settings_window.h"

namespace nivora {

SettingsWindowController::SettingsWindowController(Parts parts)
    : m_parts(std::move(parts))
{
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show()
{
    if (!m_window)
        m_window = std::make_unique<SettingsWindow>(m_parts);
    m_window->present();
}

} // namespace nivora
