#pragma once

#include "app/accessibility_permission.h"
#include "app/account.h"
#include "app/app_environment.h"
#include "app/app_ui_state.h"
#include "app/screen_translation.h"
#include "app/update_flow.h"

#include "core/connection_test.h"
#include "core/reading_service.h"
#include "core/translation_engine.h"
#include "desktop/carbon_hot_key.h"
#include "desktop/hot_key_monitor.h"
#include "desktop/login_item_manager.h"
#include "desktop/permissions_manager.h"
#include "desktop/selection_service.h"
#include "desktop/speech_input_service.h"
#include "desktop/speech_service.h"
#include "desktop/text_insertion_service.h"
#include "session/translation_view_model.h"
#include "stores/glossary_store.h"
#include "stores/history_store.h"
#include "stores/keychain_store.h"
#include "stores/settings_store.h"
#include "stores/usage_store.h"
#include "windows/floating_panel_controller.h"
#include "windows/history_window_controller.h"
#include "windows/login_window_controller.h"
#include "windows/onboarding_window_controller.h"
#include "windows/settings_window_controller.h"

#include "platform/services.h"
#include "platform/task.h"
#include "platform/window_system.h"

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace nivora {

// Owns every long-lived object, wires them through callbacks, decides what a
// trigger does, and brings the desktop side up in order. Holds no translation
// logic. Main thread only.
class AppCoordinator : public QObject
{
    Q_OBJECT

public:
    // Makes the parts; nothing else happens before start(). The services outlive
    // the coordinator. `cloudEndpoint` is the origin of the cloud service,
    // `updateEndpoint` that of the feed of releases.
    AppCoordinator(const platform::Services &services, const QUrl &cloudEndpoint,
                   const QUrl &updateEndpoint);
    ~AppCoordinator() override;

    // Called once, when the application runs.
    void start();

    // A trigger, by double Shift and by the chord alike: reads the selection and
    // opens the panel on it. Where the cloud is used and nobody is signed in, it
    // opens the login window instead, and so does showPanel().
    void invoke();

    // Opens the empty panel, without reading any selection.
    void showPanel();

    // The program is asked for by its name: what it has open at its first start,
    // or the empty panel.
    void activate();

    void showLoginWindow();
    void showHistory();
    void showSettings() { m_settingsWindow.show(); }

    // A link of the program's own scheme, from anybody: it counts while a sign-in
    // in the browser waits for it.
    void openLink(const QUrl &link);

    // The menu's line about the plan; absent while nothing is known of it.
    // BillingStore::changed tells when it may have changed.
    std::optional<QString> billingSummary() const { return m_account.billingSummary(); }

    // Translates a region of the screen that the user marks.
    void captureOCR() { m_screenTranslation.captureOCR(); }

    // The desktop's settings where the permission to read other programs' texts
    // is missing.
    void openAccessibilitySettings();

    // Says why the screen cannot be read, with a way to the desktop's settings.
    void showScreenPermissionAlert();

    // Called where a translation could not be put back and waits on the clipboard.
    std::function<void()> onTextLeftOnClipboard;

    UpdateFlow &updates() { return m_updates; }
    AppUIState &uiState() { return m_uiState; }
    SettingsStore &settings() { return m_settings; }
    AuthStore &authStore() { return m_account.authStore(); }
    SignIn &signIn() { return m_account.signIn(); }
    BillingStore &billingStore() { return m_account.billingStore(); }
    UsageStore &usageStore() { return m_usageStore; }
    GlossaryStore &glossaryStore() { return m_glossaryStore; }
    HistoryStore &historyStore();
    TranslationViewModel &viewModel() { return m_viewModel; }
    FloatingPanelController &panelController() { return m_panelController; }

private:
    void warmUp();
    void wireSession();
    bool passesGate();
    void insertIntoTarget(const QString &text);
    void tellOfTextOnClipboard();
    void startHotKeyRespectingPermission();
    void finishOnboarding();

    platform::Services m_services;
    AppEnvironment m_environment;
    AppUIState m_uiState;
    KeychainStore m_keychain;
    SettingsStore m_settings;
    TranslationEngine m_engine;
    GlossaryStore m_glossaryStore;
    UsageStore m_usageStore;
    std::unique_ptr<HistoryStore> m_historyStore;             // made at first use
    std::unique_ptr<HistoryWindowController> m_historyWindow; // the same
    Account m_account;
    SelectionService m_selectionService;
    TextInsertionService m_insertionService;
    PermissionsManager m_permissions;
    AccessibilityPermission m_accessibilityPermission;
    ReadingService m_readings;
    SpeechService m_speech;
    SpeechInputService m_speechInput;
    TranslationViewModel m_viewModel;
    FloatingPanelController m_panelController;
    ScreenTranslation m_screenTranslation;
    LoginWindowController m_loginWindow;
    OnboardingWindowController m_onboardingWindow;
    LoginItemManager m_loginItem;
    ConnectionTest m_connectionTest;
    SettingsWindowController m_settingsWindow;
    HotKeyMonitor m_hotKey;
    CarbonHotKey m_carbonHotKey;
    UpdateFlow m_updates;

    platform::Task m_screenAlert;
    platform::Task m_warmUp;
    platform::Task m_deferredTrigger; // waits for an insertion to end
    // Where the user was at the last trigger: the only window pasted into.
    std::optional<platform::ForeignWindow> m_insertTarget;
    // A capture waits in turns of the event loop, where another trigger may fire.
    bool m_capturing = false;
};

} // namespace nivora
