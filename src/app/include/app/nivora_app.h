#pragma once

#include "app/app_coordinator.h"

#include "windows/tray_icon.h"

namespace nivora {

// The program as its user meets it: the coordinator and the tray icon.
class NivoraApp
{
public:
    NivoraApp(const platform::Services &services, const QUrl &cloudEndpoint);

    void start();

    AppCoordinator &coordinator() { return m_coordinator; }

private:
    AppCoordinator m_coordinator;
    TrayIcon m_tray;
};

} // namespace nivora
