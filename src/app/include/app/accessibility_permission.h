#pragma once

#include "platform/task.h"

#include <QCoreApplication>
#include <QString>

#include <functional>

namespace nivora {

class AppUIState;
class PermissionsManager;

namespace platform {
class Accessibility;
}

// The permission to read other programs' elements: tells the menu whether it is
// there, asks for it and waits for it. Only one question is open at a time.
class AccessibilityPermission
{
    Q_DECLARE_TR_FUNCTIONS(AccessibilityPermission)

public:
    // The borrowed objects outlive this one.
    AccessibilityPermission(platform::Accessibility &accessibility, PermissionsManager &settings,
                            AppUIState &state);

    // Asks the user where it is missing. `granted` is called at once where it is
    // there, and otherwise with true as soon as it is; a later call takes the
    // place of one that waits.
    void obtain(std::function<void(bool waited)> granted);

    // The user wants it now: switches accessibility on, and leads to the desktop's
    // settings where that is not enough.
    void switchOn();

    // The desktop's settings; where it has none that are known, the question, or the
    // word that accessibility is on.
    void openSettings();

private:
    void wait(std::function<void(bool)> granted);
    void ask(const QString &message, const QString &details);
    void switchOn(const std::function<void()> &failed);
    void tellOfFailure();

    platform::Accessibility &m_accessibility;
    PermissionsManager &m_settings;
    AppUIState &m_state;
    platform::Task m_poll;
    platform::Task m_prompt; // the open question, or the wait for what it led to
};

} // namespace nivora
