#include "app/nivora_app.h"

#include "app/app_coordinator.h"

#include "windows/tray_icon.h"

#include "platform/log.h"

#include <QCoreApplication>

namespace nivora {

struct NivoraApp::Parts
{
    AppCoordinator coordinator;
    TrayIcon tray;
};

NivoraApp::NivoraApp(const platform::Services &services, const QUrl &cloudEndpoint,
                     const QUrl &updateEndpoint)
    : m_parts(new Parts{{services, cloudEndpoint, updateEndpoint}, {}})
{
    AppCoordinator &coordinator = m_parts->coordinator;
    TrayIcon &tray = m_parts->tray;
    QObject::connect(&tray, &TrayIcon::panelRequested, &coordinator, &AppCoordinator::showPanel);
    QObject::connect(&tray, &TrayIcon::accessibilitySettingsRequested, &coordinator,
                     &AppCoordinator::openAccessibilitySettings);
    const auto showPermission = [&tray, &state = coordinator.uiState()] {
        tray.setAccessibilityMissing(!state.accessibilityTrusted());
    };
    QObject::connect(&coordinator.uiState(), &AppUIState::accessibilityTrustedChanged, &tray,
                     showPermission);
    QObject::connect(&tray, &TrayIcon::updateCheckRequested, &coordinator,
                     [&coordinator] { coordinator.updates().checkForUpdates(); });
    QObject::connect(&tray, &TrayIcon::versionHistoryRequested, &coordinator,
                     [&coordinator] { coordinator.updates().showVersionHistory(); });
    QObject::connect(&tray, &TrayIcon::quitRequested, qApp, &QCoreApplication::quit);
    coordinator.onTextLeftOnClipboard = [&tray] {
        tray.notify(QCoreApplication::translate(
            "NivoraApp", "没能写回原来的窗口，译文已放在剪贴板里，可以直接粘贴。"));
    };
}

NivoraApp::~NivoraApp() = default;

void NivoraApp::start()
{
    m_parts->tray.show();
    m_parts->coordinator.start();
    m_parts->tray.setAccessibilityMissing(!m_parts->coordinator.uiState().accessibilityTrusted());
}

void NivoraApp::activate()
{
    m_parts->coordinator.activate();
}

void NivoraApp::performAction(const QString &name)
{
    if (name == u"invoke")
        m_parts->coordinator.invoke();
    else if (name == u"panel")
        m_parts->coordinator.showPanel();
    else if (name == u"settings")
        m_parts->coordinator.showSettings();
    else if (name == u"sign-in")
        m_parts->coordinator.showLoginWindow();
    else if (name == u"sign-out")
        m_parts->coordinator.authStore().signOut();
    else if (name == u"check-updates")
        m_parts->coordinator.updates().checkForUpdates();
    else if (name == u"version-history")
        m_parts->coordinator.updates().showVersionHistory();
    else if (name == u"quit")
        QCoreApplication::quit();
    else
        qCWarning(log::app) << "An action of an unknown name was asked for";
}

void NivoraApp::openLink(const QUrl &link)
{
    m_parts->coordinator.openLink(link);
}

} // namespace nivora
