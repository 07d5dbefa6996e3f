#pragma once

#include "platform/task.h"

namespace nivora {

class TrayIcon;

namespace platform {
class Preferences;
}

// Tells the user, once and never again, that the desktop has no tray for the
// program's menu, and how else the program is reached.
class MissingTrayNote
{
public:
    // Both outlive the note.
    MissingTrayNote(TrayIcon &tray, platform::Preferences &preferences);

    // Called once, when the icon may show. A desktop that is starting has a few
    // seconds for its tray.
    void start();

private:
    TrayIcon &m_tray;
    platform::Preferences &m_preferences;
    platform::Task m_wait;
};

} // namespace nivora
