#include "app/app_coordinator.h"

#include "app/interface_language.h"

#include "core/feedback_service.h"
#include "windows/alert.h"

#include "platform/accessibility.h"
#include "platform/clipboard.h"
#include "platform/http_client.h"
#include "platform/log.h"

#include <QScopedValueRollback>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto insertionPollPeriod = 20ms;
constexpr platform::KeyChord triggerChord{Qt::Key_O, Qt::ControlModifier | Qt::AltModifier};

} // namespace

AppCoordinator::AppCoordinator(const platform::Services &services, const QUrl &cloudEndpoint,
                               const QUrl &updateEndpoint)
    : m_services(services)
    , m_environment(services.appearance)
    , m_keychain(services.secrets)
    , m_settings(services.preferences, m_keychain, cloudEndpoint)
    , m_engine(services.http)
    , m_usageStore(services.preferences)
    , m_account(services.preferences, m_keychain, services.webBrowser,
                {services.http, cloudEndpoint},
                interfaceLanguage(userLanguages(services.preferences)))
    , m_selectionService(services)
    , m_insertionService(services)
    , m_permissions(services.settingsPanes)
    , m_accessibilityPermission(services.accessibility, m_permissions, m_uiState)
    , m_readings(services.japaneseTokenizer)
    , m_speech(services.speechSynthesizer)
    , m_speechInput(services.audioInput, services.speechRecognizer)
    , m_viewModel({.engine = m_engine,
                   .settings = m_settings,
                   .readings = m_readings,
                   .clipboard = services.clipboard,
                   .settingsPanes = services.settingsPanes,
                   .speech = &m_speech,
                   .speechInput = &m_speechInput})
    , m_panelController(m_viewModel, m_settings, services.windowSystem)
    , m_screenTranslation(services, m_viewModel, m_panelController)
    , m_loginWindow(m_account.signIn(), services.windowSystem)
    , m_onboardingWindow(m_account.authStore(), m_account.signIn(), services.accessibility,
                         services.windowSystem)
    , m_loginItem(services.loginItem)
    , m_connectionTest(services.http)
    , m_settingsWindow({.settings = m_settings,
                        .glossary = m_glossaryStore,
                        .usage = m_usageStore,
                        .billing = m_account.billingStore(),
                        .auth = m_account.authStore(),
                        .signIn = m_account.signIn(),
                        .speech = m_speech,
                        .loginItem = m_loginItem,
                        .connectionTest = m_connectionTest,
                        .windowSystem = services.windowSystem,
                        .relaunch = [] { AppEnvironment::relaunch(); }})
    , m_hotKey(services.keyEventTap)
    , m_carbonHotKey(services.hotKey)
    , m_updates(services, updateEndpoint)
{
}

AppCoordinator::~AppCoordinator() = default;

void AppCoordinator::start()
{
    m_uiState.setAccessibilityTrusted(m_services.accessibility.isTrusted());
    qCDebug(log::app).noquote() << u"启动: 辅助功能=%1, 双击阈值=%2ms"_s.arg(
        QString::number(m_uiState.accessibilityTrusted()),
        QString::number(m_settings.doubleTapThresholdMs.value()));

    m_environment.applyTheme(m_settings.themeModeRaw.value());
    connect(&m_settings.themeModeRaw, &SettingNotifier::changed, this,
            [this] { m_environment.applyTheme(m_settings.themeModeRaw.value()); });

    m_hotKey.onDoubleShift = [this] { invoke(); };
    m_carbonHotKey.onTrigger = [this] { invoke(); };
    const bool registered = m_carbonHotKey.registerChord(triggerChord);
    qCDebug(log::hotkey).noquote() << u"⌃⌥O 注册: %1"_s.arg(registered);

    wireSession();

    connect(&m_onboardingWindow, &OnboardingWindowController::accessibilityRequested, this,
            [this] { m_accessibilityPermission.switchOn(); });
    connect(&m_onboardingWindow, &OnboardingWindowController::finished, this,
            &AppCoordinator::finishOnboarding);

    m_hotKey.thresholdMs = m_settings.doubleTapThresholdMs.value();
    connect(&m_settings.doubleTapThresholdMs, &SettingNotifier::changed, this,
            [this] { m_hotKey.thresholdMs = m_settings.doubleTapThresholdMs.value(); });

    m_account.refreshBilling();
    if (m_settings.hasCompletedOnboarding.value())
        startHotKeyRespectingPermission();
    else
        m_onboardingWindow.show(); // whose end starts it
    m_updates.start();
}

// Makes what the first trigger needs in the first wait of its capture: a program that
// nobody has called yet does not carry it, and the one who calls does not wait for it.
void AppCoordinator::warmUp()
{
    if (m_panelController.panel())
        return;
    m_services.http.prepare();
    m_warmUp = platform::delay(0ms, [this] {
        m_panelController.prepare();
        historyStore(); // opens the file
    });
}

HistoryStore &AppCoordinator::historyStore()
{
    if (!m_historyStore)
        m_historyStore =
            std::make_unique<HistoryStore>([this] { return m_settings.saveHistory.value(); });
    return *m_historyStore;
}

void AppCoordinator::showHistory()
{
    if (!m_historyWindow)
        m_historyWindow =
            std::make_unique<HistoryWindowController>(historyStore(), m_services.clipboard);
    m_historyWindow->show();
}

void AppCoordinator::wireSession()
{
    m_screenTranslation.onAccessMissing = [this] { showScreenPermissionAlert(); };
    m_insertionService.onTextLeftOnClipboard = [this] { tellOfTextOnClipboard(); };
    m_viewModel.insertHandler = [this](const QString &text) { insertIntoTarget(text); };
    m_viewModel.glossaryProvider = [this] { return m_glossaryStore.terms(); };
    m_viewModel.historyRecorder = [this](const QString &source, const QString &translation,
                                         Language from, Language to) {
        historyStore().record(source, translation, from, to);
    };
    m_viewModel.historyLookup = [this](const QString &source, Language target) {
        return historyStore().latestTranslation(source, target);
    };
    // Always to the cloud, with the token of this moment.
    m_viewModel.feedbackHandler = [this](const FeedbackReport &report,
                                         std::function<void(bool)> done) {
        const auto token =
            m_keychain.read(KeychainStore::sessionTokenAccount()).value_or(platform::SecretText());
        return FeedbackService(m_services.http, m_settings.cloudEndpoint(), (*token).toUtf8())
            .submit(report, std::move(done));
    };
    m_viewModel.usageRecorder = [this](const TokenUsage &usage) { m_usageStore.record(usage); };
}

void AppCoordinator::insertIntoTarget(const QString &text)
{
    m_panelController.hide();
    if (m_insertTarget)
        return m_insertionService.insertViaPaste(text, *m_insertTarget);
    m_services.clipboard.setText(text);
    tellOfTextOnClipboard();
}

void AppCoordinator::tellOfTextOnClipboard()
{
    if (onTextLeftOnClipboard)
        onTextLeftOnClipboard();
}

bool AppCoordinator::passesGate()
{
    if (m_settings.useCustomBackend.value() || m_account.authStore().isSignedIn())
        return true;
    m_loginWindow.show();
    return false;
}

void AppCoordinator::invoke()
{
    if (m_capturing || !passesGate())
        return;
    // Until an insertion is over, the clipboard holds what it lent: a copy made
    // now would take that for the user's, and its return for a selection.
    if (m_insertionService.isUnderWay()) {
        m_deferredTrigger = platform::delay(insertionPollPeriod, [this] { invoke(); });
        return;
    }
    m_account.refreshBilling();
    qCDebug(log::hotkey).noquote() << u"快捷键唤起"_s;
    warmUp();

    platform::Selection selection;
    {
        const QScopedValueRollback capturing(m_capturing, true);
        selection = m_selectionService.capture();
    }
    if (!selection.overOwnWindow)
        m_insertTarget = selection.window;

    // Blanks count as no selection, but what is selected goes on as it is.
    const bool hasText = !selection.text.trimmed().isEmpty();
    const bool hasInsertTarget = selection.focusedEditable.value_or(true);
    if (selection.diag)
        selection.diag->scene = hasText ? u"read"_s : u"write"_s;
    if (hasText) {
        m_viewModel.setSource(selection.text, hasInsertTarget, selection.diag);
        m_panelController.show(PanelMode::Selection, selection.screenRect);
    } else {
        m_viewModel.prepareManualInput(hasInsertTarget, selection.diag);
        m_panelController.show(PanelMode::Compose, selection.screenRect);
    }
}

void AppCoordinator::showPanel()
{
    if (!passesGate())
        return;
    m_account.refreshBilling();
    m_viewModel.prepareManualInput(false, std::nullopt);
    m_panelController.show(PanelMode::Compose, std::nullopt);
}

void AppCoordinator::openLink(const QUrl &link)
{
    m_account.signIn().openLink(link);
}

void AppCoordinator::activate()
{
    if (m_onboardingWindow.isVisible())
        m_onboardingWindow.show();
    else
        showPanel();
}

void AppCoordinator::showLoginWindow()
{
    m_loginWindow.show();
}

void AppCoordinator::finishOnboarding()
{
    m_settings.hasCompletedOnboarding.set(true);
    startHotKeyRespectingPermission();
    m_account.refreshBilling();
}

void AppCoordinator::startHotKeyRespectingPermission()
{
    m_accessibilityPermission.obtain([this](bool waited) {
        const bool started = m_hotKey.start();
        qCDebug(log::hotkey).noquote()
            << (waited ? u"授权完成, 事件监听启动: %1"_s : u"事件监听启动: %1"_s).arg(started);
    });
}

void AppCoordinator::showScreenPermissionAlert()
{
    m_screenAlert =
        showAlert({tr("需要屏幕录制权限"),
                   tr("「截图翻译」需要屏幕录制权限。请在系统设置→隐私与安全性→屏幕录制中开启 "
                      "Nivora，然后重新启动 App。"),
                   {tr("打开系统设置"), tr("取消")}},
                  [this](int button) {
                      if (button == 0 && !m_permissions.openScreenRecordingSettings())
                          m_screenAlert = showAlert(
                              {tr("没有找到系统设置程序"), QString(), {tr("好")}}, [](int) {});
                  });
}

void AppCoordinator::openAccessibilitySettings()
{
    m_accessibilityPermission.openSettings();
}

} // namespace nivora
