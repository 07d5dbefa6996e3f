#include "app/nivora_app.h"

#include <QCoreApplication>

namespace nivora {

NivoraApp::NivoraApp(const platform::Services &services, const QUrl &cloudEndpoint)
    : m_coordinator(services, cloudEndpoint)
{
    QObject::connect(&m_tray, &TrayIcon::panelRequested, &m_coordinator,
                     &AppCoordinator::showPanel);
    QObject::connect(&m_tray, &TrayIcon::quitRequested, qApp, &QCoreApplication::quit);
    m_coordinator.onSignInRequired = [this] {
        m_tray.notify(QCoreApplication::translate("NivoraApp", "请先登录，或在设置中使用自建后端。"));
    };
}

void NivoraApp::start()
{
    m_tray.show();
    m_coordinator.start();
}

} // namespace nivora
