#pragma once

#include "updates/release_notes.h"
#include "updates/sparkle_gentle_reminders.h"
#include "updates/update_server.h"
#include "updates/updater.h"
#include "updates/version_history.h"
#include "windows/version_history_window.h"

#include "platform/services.h"
#include "platform/task.h"

#include <QUrl>

#include <memory>

namespace nivora {

class UpdateWindow;

// The updates and the version history, from the feed to the windows.
class UpdateFlow
{
public:
    // `origin` is where the feed lies. The services outlive this object.
    UpdateFlow(const platform::Services &services, const QUrl &origin);
    ~UpdateFlow();

    // Begins with the checks of its own.
    void start();

    // What the user asks for.
    void checkForUpdates();
    void showVersionHistory();

private:
    void makeWindow();
    void bringToFront();

    platform::Services m_services;
    UpdateServer m_server;
    ReleaseNotes m_notes;
    SparkleGentleReminders m_gentleReminders;
    Updater m_updater;
    VersionHistory m_history;
    VersionHistoryWindowController m_versionHistoryWindow;
    std::unique_ptr<UpdateWindow> m_window; // made when there is something to show
    platform::Task m_link;
    platform::Task m_raising;
};

} // namespace nivora
