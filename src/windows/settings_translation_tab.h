#pragma once

#include "settings_form.h"

#include "windows/settings_window_controller.h"

namespace nivora {

class SettingsTranslationTab : public SettingsForm
{
    Q_OBJECT

public:
    SettingsTranslationTab(const SettingsWindowController::Parts &parts, QWidget *parent);

private:
    void addTemplate();
    void addLanguages();
    void addJapanese();

    SettingsStore &m_settings;
};

} // namespace nivora
