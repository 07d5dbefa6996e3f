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

} // namespace

struct NivoraApp::Parts
{
    Parts(const platform::Services &services, const Deployment &where)
        : deployment(where)
        , translations(interfaceLanguage(userLanguages(services.preferences)))
        , browser(services.webBrowser)
        , coordinator(services, where.cloudEndpoint, where.updateEndpoint)
        , menu(QCoreApplication::applicationVersion())
        , tray(menu, services.trayHosts)
        , missingTray(tray, services.preferences)
    {
    }

    Deployment deployment;
    Translations translations; // before anything that has a text
    platform::WebBrowser &browser;
    AppCoordinator coordinator;
    MenuContent menu;
    TrayIcon tray;
    MissingTrayNote missingTray;
    platform::Task page;
};

NivoraApp::NivoraApp(const platform::Services &services, const Deployment &deployment)
    : m_parts(std::make_unique<Parts>(services, deployment))
{
    AppCoordinator &coordinator = m_parts->coordinator;
    TrayIcon &tray = m_parts->tray;
    QObject::connect(&m_parts->menu, &MenuContent::chosen, &m_parts->menu,
                     [this](MenuCommand command) { perform(command); });
    const auto render = [this] { renderMenu(); };
    QObject::connect(&coordinator.uiState(), &AppUIState::accessibilityTrustedChanged,
                     &m_parts->menu, render);
    QObject::connect(&coordinator.authStore(), &AuthStore::changed, &m_parts->menu, render);
    QObject::connect(&coordinator.billingStore(), &BillingStore::changed, &m_parts->menu, render);
    coordinator.onTextLeftOnClipboard = [&tray] {
        tray.notify(QCoreApplication::translate(
            "NivoraApp", "没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。"));
    };
}

NivoraApp::~NivoraApp() = default;

void NivoraApp::start()
{
    m_parts->tray.show();
    m_parts->missingTray.start();
    m_parts->coordinator.start();
    renderMenu();
}

void NivoraApp::activate()
{
    m_parts->coordinator.activate();
}

void NivoraApp::renderMenu()
{
    AppCoordinator &coordinator = m_parts->coordinator;
    const bool trusted = coordinator.uiState().accessibilityTrusted();
    m_parts->menu.setState({.accessibilityTrusted = trusted,
                            .email = coordinator.authStore().email(),
                            .billingSummary = coordinator.billingSummary().value_or(QString())});
    m_parts->tray.setMarked(!trusted);
}

void NivoraApp::performAction(const QString &name)
{
    if (name == u"invoke")
        return m_parts->coordinator.invoke();
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
        return m_parts->coordinator.openAccessibilitySettings();
    case MenuCommand::ShowPanel:
        return m_parts->coordinator.showPanel();
    case MenuCommand::CaptureOCR:
        return m_parts->coordinator.captureOCR();
    case MenuCommand::ShowHistory:
        return m_parts->coordinator.showHistory();
    case MenuCommand::ShowSettings:
        return m_parts->coordinator.showSettings();
    case MenuCommand::CheckForUpdates:
        return m_parts->coordinator.updates().checkForUpdates();
    case MenuCommand::ShowVersionHistory:
        return m_parts->coordinator.updates().showVersionHistory();
    case MenuCommand::VisitWebsite:
        return visitWebsite();
    case MenuCommand::SignIn:
        return m_parts->coordinator.showLoginWindow();
    case MenuCommand::SignOut:
        return m_parts->coordinator.authStore().signOut();
    case MenuCommand::Quit:
        return QCoreApplication::quit();
    }
}

void NivoraApp::visitWebsite()
{
    m_parts->page = m_parts->browser.open(m_parts->deployment.website, [this](bool opened) {
        if (!opened)
            m_parts->tray.notify(
                QCoreApplication::translate("NivoraApp", "没有找到可以打开网页的浏览器。"));
    });
}

void NivoraApp::openLink(const QUrl &link)
{
    m_parts->coordinator.openLink(link);
}

} // namespace nivora
