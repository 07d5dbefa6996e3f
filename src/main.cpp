#include "app/nivora_app.h"

#include "platform_linux/core_dumps.h"
#include "platform_linux/dbus_application.h"
#include "platform_linux/heap_limits.h"
#include "platform_linux/heap_trimmer.h"
#include "platform_linux/launch_links.h"
#include "platform_linux/linux_backend.h"
#include "platform_linux/termination_signals.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QStyleFactory>

#include <optional>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;

int main(int argc, char *argv[])
{
    linuxdesktop::forbidCoreDumps();
    linuxdesktop::limitHeaps();
    const QStringList links = linuxdesktop::takeLaunchLinks(argc, argv);

    // Other programs' windows are reached through the X server, also where it is
    // the one of a Wayland session.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");

    // The window class, by which scripts and assistive tools find our windows.
    QApplication::setApplicationName(u"Nivora"_s);
    QApplication::setApplicationVersion(QStringLiteral(NIVORA_VERSION));
    QApplication::setDesktopFileName(u"app.nivora"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));

    const linuxdesktop::HeapTrimmer heapTrimmer(application);
    const linuxdesktop::TerminationSignals termination;
    QObject::connect(&termination, &linuxdesktop::TerminationSignals::received, &application,
                     &QCoreApplication::quit);

    std::optional<linuxdesktop::LinuxBackend> backend;
    std::optional<NivoraApp> nivora;
    // The bus answers while the rest is being made.
    linuxdesktop::DBusApplication bus;
    const platform::Task acquisition =
        bus.acquire(links, [&](linuxdesktop::DBusApplication::Role role) {
            if (role == linuxdesktop::DBusApplication::Role::Secondary)
                return QCoreApplication::quit();
            nivora->start();
        });

    backend.emplace();
    if (!backend->isValid()) {
        qCritical("Nivora needs an X server: none answers on this display");
        return 1;
    }
    nivora.emplace(backend->services(),
                   Deployment{.cloudEndpoint = QUrl(QStringLiteral(NIVORA_CLOUD_ENDPOINT)),
                              .updateEndpoint = QUrl(QStringLiteral(NIVORA_UPDATE_ENDPOINT)),
                              .website = QUrl(QStringLiteral(NIVORA_WEBSITE))});
    // Queued: an action may take a second, and the caller has its answer before.
    QObject::connect(
        &bus, &linuxdesktop::DBusApplication::activated, &bus, [&nivora] { nivora->activate(); },
        Qt::QueuedConnection);
    QObject::connect(
        &bus, &linuxdesktop::DBusApplication::actionRequested, &bus,
        [&nivora](const QString &name) { nivora->performAction(name); }, Qt::QueuedConnection);
    QObject::connect(
        &bus, &linuxdesktop::DBusApplication::linkOpened, &bus,
        [&nivora](const QUrl &link) { nivora->openLink(link); }, Qt::QueuedConnection);
    return QApplication::exec();
}
