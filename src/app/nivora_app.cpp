#include "app/nivora_app.h"

#include "app/app_coordinator.h"
#include "app/interface_language.h"
#include "app/missing_tray_note.h"
#include "app/translations.h"

#include "windows/menu_content.h"
#include "windows/tray_icon.h"

#include "platform/log.h"
#include "platform/web_browser.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

struct NamedCommand
{
    QLatin1StringView name;
    MenuCommand command;
};

// What the session bus calls the entries of the menu.
constexpr NamedCommand namedCommands[] = {
    {"accessibility-settings"_L1, MenuCommand::OpenAccessibilitySettings},
    {"panel"_L1, MenuCommand::ShowPanel},
    {"capture"_L1, MenuCommand::CaptureOCR},
    {"history"_L1, MenuCommand::ShowHistory},
    {"settings"_L1, MenuCommand::ShowSettings},
    {"check-updates"_L1, MenuCommand::CheckForUpdates},
    {"version-history"_L1, MenuCommand::ShowVersionHistory},
    {"website"_L1, MenuCommand::VisitWebsite},
    {"sign-in"_L1, MenuCommand::SignIn},
    {"sign-out"_L1, MenuCommand::SignOut},
    {"quit"_L1, MenuCommand::Quit},
};

// For the desktop's word on its tray; nobody waits longer for the program to begin.
constexpr auto longestWaitForTray = 200ms;

} // namespace

struct NivoraApp::Parts
{
    Parts(const platform::Services &services, const Deployment &where)
        : deployment(where)
        , translations(interfaceLanguage(userLanguages(services.preferences)))
        , services(services)
        , menu(QCoreApplication::applicationVersion())
        , tray(menu, services.trayHosts)
        , missingTray(tray, services.preferences)
    {
    }

    Deployment deployment;
    Translations translations; // before anything that has a text
    platform::Services services;
    MenuContent menu;
    TrayIcon tray;
    MissingTrayNote missingTray;
    std::unique_ptr<AppCoordinator> coordinator; // absent until the program begins
    platform::Task beginning;
    platform::Task page;
};

NivoraApp::NivoraApp(const platform::Services &services, const Deployment &deployment)
    : m_parts(std::make_unique<Parts>(services, deployment))
{
    QObject::connect(&m_parts->menu, &MenuContent::chosen, &m_parts->menu,
                     [this](MenuCommand command) { perform(command); });
}

NivoraApp::~NivoraApp() = default;

void NivoraApp::start()
{
    // What the rest waits for, the keyring above all, the icon does not.
    QObject::connect(&m_parts->tray, &TrayIcon::trayKnown, &m_parts->tray,
                     [this] { m_parts->beginning = platform::delay({}, [this] { begin(); }); });
    m_parts->beginning = platform::delay(longestWaitForTray, [this] { begin(); });
    m_parts->tray.show();
    m_parts->missingTray.start();
}

void NivoraApp::begin()
{
    if (m_parts->coordinator)
        return;
    m_parts->coordinator = std::make_unique<AppCoordinator>(
        m_parts->services, m_parts->deployment.cloudEndpoint, m_parts->deployment.updateEndpoint);
    AppCoordinator &coordinator = *m_parts->coordinator;
    const auto render = [this] { renderMenu(); };
    QObject::connect(&coordinator.uiState(), &AppUIState::accessibilityTrustedChanged,
                     &m_parts->menu, render);
    QObject::connect(&coordinator.authStore(), &AuthStore::changed, &m_parts->menu, render);
    QObject::connect(&coordinator.billingStore(), &BillingStore::changed, &m_parts->menu, render);
    coordinator.onTextLeftOnClipboard = [&tray = m_parts->tray] {
        tray.notify(QCoreApplication::translate(
            "NivoraApp", "没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。"));
    };
    coordinator.start();
    renderMenu();
}

// An action or a link may come before the program has begun by itself.
AppCoordinator &NivoraApp::coordinator()
{
    begin();
    return *m_parts->coordinator;
}

void NivoraApp::activate()
{
    coordinator().activate();
}

void NivoraApp::renderMenu()
{
    AppCoordinator &coordinator = *m_parts->coordinator;
    const bool trusted = coordinator.uiState().accessibilityTrusted();
    m_parts->menu.setState({.accessibilityTrusted = trusted,
                            .email = coordinator.authStore().email(),
                            .billingSummary = coordinator.billingSummary().value_or(QString())});
    m_parts->tray.setMarked(!trusted);
}

void NivoraApp::performAction(const QString &name)
{
    if (name == u"invoke")
        return coordinator().invoke();
    const auto *found = std::ranges::find_if(
        namedCommands, [&](const NamedCommand &each) { return each.name == name; });
    if (found == std::end(namedCommands))
        qCWarning(log::app) << "An action of an unknown name was asked for";
    else
        perform(found->command);
}

void NivoraApp::perform(MenuCommand command)
{
    switch (command) {
    case MenuCommand::OpenAccessibilitySettings:
        return coordinator().openAccessibilitySettings();
    case MenuCommand::ShowPanel:
        return coordinator().showPanel();
    case MenuCommand::CaptureOCR:
        return coordinator().captureOCR();
    case MenuCommand::ShowHistory:
        return coordinator().showHistory();
    case MenuCommand::ShowSettings:
        return coordinator().showSettings();
    case MenuCommand::CheckForUpdates:
        return coordinator().updates().checkForUpdates();
    case MenuCommand::ShowVersionHistory:
        return coordinator().updates().showVersionHistory();
    case MenuCommand::VisitWebsite:
        return visitWebsite();
    case MenuCommand::SignIn:
        return coordinator().showLoginWindow();
    case MenuCommand::SignOut:
        return coordinator().authStore().signOut();
    case MenuCommand::Quit:
        return QCoreApplication::quit();
    }
}

void NivoraApp::visitWebsite()
{
    m_parts->page =
        m_parts->services.webBrowser.open(m_parts->deployment.website, [this](bool opened) {
            if (!opened)
                m_parts->tray.notify(
                    QCoreApplication::translate("NivoraApp", "没有找到可以打开网页的浏览器。"));
        });
}

void NivoraApp::openLink(const QUrl &link)
{
    coordinator().openLink(link);
}

} // namespace nivora
