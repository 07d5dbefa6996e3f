#include "app/update_flow.h"

#include "app/interface_language.h"

#include "windows/update_window.h"

#include "platform/web_browser.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

UpdateFlow::UpdateFlow(const platform::Services &services, const QUrl &origin)
    : m_services(services)
    , m_server(services.http, origin)
    , m_notes(m_server)
    , m_gentleReminders([this] { bringToFront(); })
    , m_updater({.server = m_server,
                 .preferences = services.preferences,
                 .idleMonitor = services.idleMonitor,
                 .webBrowser = services.webBrowser,
                 .delegate = m_gentleReminders},
                {QCoreApplication::applicationVersion(), QSysInfo::kernelVersion()})
    , m_history(m_server, [this] { return userLanguages(m_services.preferences); })
    , m_versionHistoryWindow(m_history, m_notes, [this](const QUrl &link) {
        m_link = m_services.webBrowser.open(link, [](bool) {});
    })
{
    m_gentleReminders.onShowVersionHistory = [this] { showVersionHistory(); };
    QObject::connect(&m_updater, &Updater::changed, &m_updater, [this] {
        if (m_updater.phase() != Updater::Phase::Quiet)
            makeWindow();
    });
}

UpdateFlow::~UpdateFlow() = default;

void UpdateFlow::start()
{
    m_updater.start();
}

void UpdateFlow::checkForUpdates()
{
    m_updater.checkForUpdates();
}

void UpdateFlow::showVersionHistory()
{
    m_versionHistoryWindow.show();
}

void UpdateFlow::makeWindow()
{
    if (!m_window)
        m_window = std::make_unique<UpdateWindow>(m_updater);
}

// The updater says that it will show something, and shows it then.
void UpdateFlow::bringToFront()
{
    m_raising = platform::delay(0ms, [this] {
        if (m_window)
            m_window->bringToFront();
    });
}

} // namespace nivora
