#pragma once

namespace nivora::platform {

// Parts of the desktop's own settings program.
enum class SettingsPane { Accessibility, ScreenRecording, Microphone };

class SettingsPanes
{
public:
    virtual ~SettingsPanes() = default;

    // Opens the pane, or what comes nearest to it on this desktop. False when no
    // settings program is found.
    virtual bool open(SettingsPane pane) = 0;
};

} // namespace nivora::platform
