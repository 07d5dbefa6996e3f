#pragma once

#include "updates/release.h"
#include "updates/update_server.h"

#include "platform/task.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

namespace nivora {

namespace platform {
class IdleMonitor;
class Preferences;
class WebBrowser;
} // namespace platform

class SparkleGentleReminders;

// Looks for a newer release in the feed, by itself and when the user asks, and
// tells of it. It downloads nothing but the feed and runs nothing: what the user
// wants of a release opens in their browser.
//
// A check of its own that finds nothing, or fails, says nothing. One that finds
// something waits until nobody is at the keyboard before it says so. A check that
// the user asked for always ends with an answer.
class Updater : public QObject
{
    Q_OBJECT

public:
    // All of them outlive the updater.
    struct Parts
    {
        UpdateServer &server;
        platform::Preferences &preferences;
        platform::IdleMonitor &idleMonitor;
        platform::WebBrowser &webBrowser;
        const SparkleGentleReminders &delegate;
    };

    // What is running.
    struct Versions
    {
        QString program;
        QString system; // see newerRelease()
    };

    struct Schedule
    {
        std::chrono::milliseconds first = std::chrono::minutes(1); // after the start
        std::chrono::milliseconds period = std::chrono::hours(24);
        // Added to each period at random, so that not all programs ask at once.
        std::chrono::milliseconds jitter = std::chrono::hours(2);
        // Without a touch of the keyboard or the pointer, before a reminder.
        std::chrono::milliseconds idle = std::chrono::minutes(1);
    };

    enum class Phase { Quiet, Checking, Found, UpToDate, Failed, NoBrowser };

    Updater(const Parts &parts, Versions versions, const Schedule &schedule);
    Updater(const Parts &parts, Versions versions);

    // Begins with the checks of its own.
    void start();

    // For the user, who sees what comes of it.
    void checkForUpdates();

    Phase phase() const { return m_phase; }
    const QString &programVersion() const { return m_versions.program; }
    // In Found and NoBrowser.
    const std::optional<Release> &release() const { return m_release; }
    const QString &error() const { return m_error; } // in Failed
    bool offersVersionHistory() const;

    // The release's page, or its package where it has no page; empty without either.
    QUrl page() const;

    // What the user decides on a release. Each leads back to Quiet: the first once
    // a browser has taken the page, or to NoBrowser when there is none.
    void openPage();
    void skip(); // this version is not told of again, unless the user asks
    void dismiss();

    void showVersionHistory() const;

Q_SIGNALS:
    void changed();
    // The window is wanted in front: with the keyboard, or without.
    void presented(bool userInitiated);

private:
    void checkBySchedule();
    void take(const UpdateServer::Result &result, bool userInitiated);
    void remind(const Release &release);
    void enter(Phase phase);
    void fail(const QString &error);

    Parts m_parts;
    Versions m_versions;
    Schedule m_schedule;
    QTimer m_timer;
    Phase m_phase = Phase::Quiet;
    std::optional<Release> m_release;
    QString m_error;
    platform::Task m_request;
    platform::Task m_wait; // for the user to leave the keyboard
    platform::Task m_opening;
};

} // namespace nivora
