#pragma once

#include "settings_form.h"

#include "windows/settings_window_controller.h"

class QComboBox;

namespace nivora {

class ToggleSwitch;

class SettingsGeneralTab : public SettingsForm
{
    Q_OBJECT

public:
    SettingsGeneralTab(const SettingsWindowController::Parts &parts, QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addAppearance();
    void addBehaviour();
    void addSpeech();
    void setLaunchAtLogin(bool enabled);
    void renderLaunchAtLogin();
    void renderVoices();

    SettingsWindowController::Parts m_parts;
    ToggleSwitch *m_launchAtLogin = nullptr;
    QComboBox *m_voice = nullptr;
};

} // namespace nivora
