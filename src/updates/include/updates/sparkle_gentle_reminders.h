#pragma once

#include "updates/release.h"

#include <functional>

namespace nivora {

// Asked by the updater how it shall behave towards the user.
// https://sparkle-project.org/documentation/gentle-reminders/
class SparkleGentleReminders
{
public:
    // `activate` brings the program's windows to the front. It leaves the keyboard
    // where it is.
    explicit SparkleGentleReminders(std::function<void()> activate)
        : m_activate(std::move(activate))
    {
    }

    struct UserUpdateState
    {
        bool userInitiated = false;
    };

    // Opens the version history, where there is one.
    std::function<void()> onShowVersionHistory;

    bool supportsGentleScheduledUpdateReminders() const { return true; }

    // The updater's own window shows every update.
    bool standardUserDriverShouldHandleShowingScheduledUpdate(const Release &,
                                                              bool /*inImmediateFocus*/) const
    {
        return true;
    }

    void standardUserDriverWillHandleShowingUpdate(bool handleShowingUpdate, const Release &,
                                                   UserUpdateState state) const
    {
        if (handleShowingUpdate && !state.userInitiated)
            m_activate();
    }

    bool standardUserDriverShouldShowVersionHistory() const { return bool(onShowVersionHistory); }

    void standardUserDriverShowVersionHistory() const
    {
        if (onShowVersionHistory)
            onShowVersionHistory();
    }

private:
    std::function<void()> m_activate;
};

} // namespace nivora
