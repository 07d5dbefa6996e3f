#pragma once

#include <functional>
#include <memory>

namespace nivora {

class AuthStore;
class BillingStore;
class ConnectionTest;
class GlossaryStore;
class LoginItemManager;
class SettingsStore;
class SettingsWindow;
class SignIn;
class SpeechService;
class UsageStore;

namespace platform {
class WindowSystem;
}

// Owns the window in which the user sets the program up. It is made at the first
// use and only hidden afterwards, so that it comes back in the state and the place
// that it was left in. There is nothing to confirm: every control writes through.
class SettingsWindowController
{
public:
    // All of it outlives the controller.
    struct Parts
    {
        SettingsStore &settings;
        GlossaryStore &glossary;
        UsageStore &usage;
        BillingStore &billing;
        AuthStore &auth;
        SignIn &signIn;
        SpeechService &speech;
        LoginItemManager &loginItem;
        ConnectionTest &connectionTest;
        platform::WindowSystem &windowSystem;
        std::function<void()> relaunch; // ends this process and starts another one
    };

    explicit SettingsWindowController(Parts parts);
    ~SettingsWindowController();

    // Opens the window, or brings it to the front.
    void show();

private:
    Parts m_parts;
    std::unique_ptr<SettingsWindow> m_window; // null before the first use
};

} // namespace nivora
