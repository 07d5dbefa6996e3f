#include "support/desktop_session.h"

#include "child_process.h"
#include "desktop_configurations.h"
#include "screen_grab.h"
#include "support/wait.h"
#include "support/x11_peer.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <utility>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Generous: the machine may be busy compiling.
constexpr auto startBound = 20s;
constexpr int startBoundMs = 20'000;

// Marks every process of the session, those included that the buses start.
const auto markName = u"NIVORA_TEST_SESSION"_s;

bool writeFile(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

// A connection to one of the session's buses for the length of a scope.
class BusVisit
{
public:
    BusVisit(const QString &address, const QString &name)
        : m_name(name)
        , m_connection(QDBusConnection::connectToBus(address, name))
    {
    }
    ~BusVisit() { QDBusConnection::disconnectFromBus(m_name); }
    BusVisit(const BusVisit &) = delete;
    BusVisit &operator=(const BusVisit &) = delete;

    QDBusConnection *operator->() { return &m_connection; }

private:
    QString m_name;
    QDBusConnection m_connection;
};

// Kills the process behind a name on the bus.
bool killOwner(const QString &address, const QString &service)
{
    BusVisit bus(address, u"of the test "_s + service);
    const QDBusReply<uint> process =
        bus->isConnected() ? bus->interface()->servicePid(service) : QDBusReply<uint>();
    return process.isValid() && kill(pid_t(process.value()), SIGKILL) == 0;
}

} // namespace

DesktopSession::DesktopSession() = default;

DesktopSession::~DesktopSession()
{
    // The programs first, what they live on last.
    while (!m_processes.empty()) {
        endProcess(*m_processes.back());
        m_processes.pop_back();
    }
    if (m_folder.isValid())
        endStragglers();
}

bool DesktopSession::start(const Options &options)
{
    if (!m_folder.isValid())
        return fail(u"cannot make a temporary folder"_s);
    prepareEnvironment();
    return startServer(options) && arrangeScreens(options) && setScale(options.scale) &&
           startBus() && (!options.windowManager || startWindowManager()) &&
           (!options.accessibility || startAccessibility()) && (!options.keyring || startKeyring());
}

void DesktopSession::prepareEnvironment()
{
    m_environment = QProcessEnvironment::systemEnvironment();
    const std::array foreign{"QT_"_L1,   "GTK_"_L1,    "GDK_"_L1,     "XDG_"_L1,
                             "DBUS_"_L1, "GNOME_"_L1,  "DESKTOP_"_L1, "SESSION_"_L1,
                             "LC_"_L1,   "LANG"_L1,    "AT_SPI"_L1,   "WAYLAND_"_L1,
                             "XAUTH"_L1, "DISPLAY"_L1, "NO_AT_"_L1,   "XMODIFIERS"_L1};
    const auto names = m_environment.keys();
    for (const auto &name : names) {
        const bool isForeign = std::ranges::any_of(
            foreign, [&](QLatin1StringView prefix) { return name.startsWith(prefix); });
        if (isForeign || name.endsWith("_proxy"_L1, Qt::CaseInsensitive))
            m_environment.remove(name);
    }

    const QDir folder(m_folder.path());
    // Programs that run only once look for themselves in the temporary folder.
    const std::array<std::pair<QString, QString>, 7> folders{{{u"HOME"_s, u"home"_s},
                                                              {u"TMPDIR"_s, u"tmp"_s},
                                                              {u"XDG_CONFIG_HOME"_s, u"config"_s},
                                                              {u"XDG_DATA_HOME"_s, u"data"_s},
                                                              {u"XDG_CACHE_HOME"_s, u"cache"_s},
                                                              {u"XDG_STATE_HOME"_s, u"state"_s},
                                                              {u"XDG_RUNTIME_DIR"_s, u"run"_s}}};
    for (const auto &[variable, name] : folders) {
        const auto path = folder.filePath(name);
        folder.mkpath(name);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_environment.insert(variable, path);
    }
    folder.mkpath(u"services"_s);
    folder.mkpath(u"logs"_s);

    m_environment.insert(markName, m_folder.path());
    m_environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    m_environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    m_environment.insert(u"GDK_BACKEND"_s, u"x11"_s);
    m_environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    m_environment.insert(u"GTK_USE_PORTAL"_s, u"0"_s);
    m_environment.insert(u"GIO_USE_VFS"_s, u"local"_s);
}

bool DesktopSession::startServer(const Options &options)
{
    if (options.secondScreen.isEmpty()) {
        return awaitServer(
            launch(u"Xvfb"_s,
                   {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s,
                    u"%1x%2x24"_s.arg(options.screenSize.width()).arg(options.screenSize.height()),
                    u"-nolisten"_s, u"tcp"_s, u"-noreset"_s}));
    }
    // Xvfb has one screen only.
    const auto configFile = folder() + u"/xorg.conf"_s;
    if (!writeFile(configFile, dummyServerConfig))
        return fail(u"cannot write "_s + configFile);
    return awaitServer(launch(u"/usr/lib/xorg/Xorg"_s,
                              {u"-displayfd"_s, u"1"_s, u"-config"_s, configFile, u"-logfile"_s,
                               folder() + u"/logs/xorg"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s,
                               u"-novtswitch"_s, u"-sharevts"_s, u"-keeptty"_s}));
}

bool DesktopSession::awaitServer(QProcess *server)
{
    if (!server)
        return false;
    const bool answered =
        waitUntil([&] { return server->canReadLine() || server->state() == QProcess::NotRunning; },
                  startBound);
    if (!answered || !server->canReadLine())
        return fail(u"the X server did not come up"_s);
    m_displayName = ":" + server->readLine().trimmed();
    m_environment.insert(u"DISPLAY"_s, QString::fromLatin1(m_displayName));
    return true;
}

bool DesktopSession::arrangeScreens(const Options &options)
{
    if (options.secondScreen.isEmpty())
        return true;
    const auto mode = [](QSize size) { return u"%1x%2"_s.arg(size.width()).arg(size.height()); };
    const auto second = options.secondScreen;
    return run(u"xrandr"_s, {u"--addmode"_s, u"DUMMY1"_s, mode(second)}) &&
           run(u"xrandr"_s, {u"--output"_s, u"DUMMY1"_s, u"--mode"_s, mode(second), u"--pos"_s,
                             u"0x0"_s, u"--output"_s, u"DUMMY0"_s, u"--primary"_s, u"--mode"_s,
                             mode(options.screenSize), u"--pos"_s, mode(second)});
}

bool DesktopSession::setScale(double scale)
{
    constexpr double unscaled = 96; // dots per inch
    const auto file = folder() + u"/resources"_s;
    // GTK enlarges its windows by whole numbers only, and its texts with them.
    if (scale == std::floor(scale) && scale > 1) {
        m_environment.insert(u"GDK_SCALE"_s, QString::number(scale));
        m_environment.insert(u"GDK_DPI_SCALE"_s, QString::number(1 / scale));
    }
    return scale == 1 ||
           (writeFile(file, "Xft.dpi: " + QByteArray::number(qRound(unscaled * scale)) + '\n') &&
            run(u"xrdb"_s, {u"-merge"_s, u"-nocpp"_s, file}));
}

bool DesktopSession::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(program, arguments);
    return (process.waitForFinished(startBoundMs) && process.exitCode() == 0) ||
           fail(program + u" failed: "_s + QString::fromUtf8(process.readAllStandardError()));
}

bool DesktopSession::startBus()
{
    // Of the system's services only the accessibility bus may be started on
    // demand: the rest would differ from one machine to the next.
    const auto service = u"/org.a11y.Bus.service"_s;
    const auto folder = m_folder.path();
    QFile::copy(u"/usr/share/dbus-1/services"_s + service, folder + u"/services"_s + service);
    const auto configFile = folder + u"/bus.conf"_s;
    if (!writeFile(configFile, QByteArray(busConfig).replace("%FOLDER%", folder.toUtf8())))
        return fail(u"cannot write "_s + configFile);

    m_busAddress = u"unix:path="_s + folder + u"/bus"_s;
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_busAddress);
    auto *bus = launch(u"dbus-daemon"_s, {u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                                          u"--config-file="_s + configFile});
    if (!bus)
        return false;
    // The address is printed once the bus listens.
    const bool answered = waitUntil(
        [&] { return bus->canReadLine() || bus->state() == QProcess::NotRunning; }, startBound);
    if (!answered || !bus->canReadLine())
        return fail(u"dbus-daemon did not come up"_s);
    return true;
}

bool DesktopSession::startAccessibility()
{
    BusVisit bus(m_busAddress, u"nivora-test-session"_s);
    if (!bus->isConnected())
        return fail(u"cannot reach the session bus"_s);

    const auto call = [](const QString &interface, const QString &method) {
        return QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, interface,
                                              method);
    };
    const QDBusReply<QString> address =
        bus->call(call(u"org.a11y.Bus"_s, u"GetAddress"_s), QDBus::Block, startBoundMs);
    if (!address.isValid())
        return fail(u"no accessibility bus: "_s + address.error().message());
    m_accessibilityBusAddress = address.value();

    const auto properties = u"org.freedesktop.DBus.Properties"_s;
    auto enable = call(properties, u"Set"_s);
    enable << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
    bus->call(enable, QDBus::Block, startBoundMs);
    auto ask = call(properties, u"Get"_s);
    ask << u"org.a11y.Status"_s << u"IsEnabled"_s;
    const QDBusReply<QDBusVariant> enabled = bus->call(ask, QDBus::Block, startBoundMs);
    if (!enabled.isValid() || !enabled.value().variant().toBool())
        return fail(u"accessibility cannot be switched on"_s);

    BusVisit accessibility(m_accessibilityBusAddress, u"nivora-test-accessibility"_s);
    if (!accessibility->isConnected())
        return fail(u"cannot reach the accessibility bus"_s);
    const auto registry = accessibility->interface()->startService(u"org.a11y.atspi.Registry"_s);
    return registry.isValid() ||
           fail(u"no accessibility registry: "_s + registry.error().message());
}

bool DesktopSession::endAccessibilityRegistry()
{
    return killOwner(m_accessibilityBusAddress, u"org.a11y.atspi.Registry"_s);
}

// Both the bus and the program that would start it anew.
bool DesktopSession::endAccessibility()
{
    return killOwner(m_busAddress, u"org.a11y.Bus"_s) &&
           killOwner(m_accessibilityBusAddress, u"org.freedesktop.DBus"_s);
}

void DesktopSession::endKeyring()
{
    if (m_keyring)
        end(std::exchange(m_keyring, nullptr));
}

bool DesktopSession::startKeyring()
{
    m_keyring = launch(u"gnome-keyring-daemon"_s,
                       {u"--foreground"_s, u"--unlock"_s, u"--components=secrets"_s});
    if (!m_keyring)
        return false;
    m_keyring->write("a password for tests");
    m_keyring->closeWriteChannel();

    BusVisit bus(m_busAddress, u"nivora-test-keyring"_s);
    const auto hasDefaultCollection = [&] {
        auto ask = QDBusMessage::createMethodCall(
            u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
            u"org.freedesktop.Secret.Service"_s, u"ReadAlias"_s);
        ask << u"default"_s;
        const QDBusReply<QDBusObjectPath> alias = bus->call(ask, QDBus::Block, startBoundMs);
        return alias.isValid() && alias.value().path() != "/"_L1;
    };
    return waitUntil(hasDefaultCollection, startBound) || fail(u"no unlocked keyring"_s);
}

std::vector<qint64> DesktopSession::serverProcessIds() const
{
    std::vector<qint64> processes{m_processes.front()->processId()};
    if (m_windowManager)
        processes.push_back(m_windowManager->processId());
    return processes;
}

bool DesktopSession::startWindowManager()
{
    const auto configFile = m_folder.filePath(u"openbox.xml"_s);
    if (!writeFile(configFile, windowManagerConfig))
        return fail(u"cannot write "_s + configFile);
    m_windowManager = launch(u"openbox"_s, {u"--config-file"_s, configFile});
    if (!m_windowManager)
        return false;

    const X11Peer peer(m_displayName);
    const auto sign = peer.atom("_NET_SUPPORTING_WM_CHECK");
    const auto announced = [&] { return !peer.property(peer.root(), sign).isEmpty(); };
    return waitUntil(announced, startBound) || fail(u"openbox did not come up"_s);
}

QProcess *DesktopSession::launch(const QString &program, const QStringList &arguments)
{
    return launch(program, arguments, m_environment);
}

QProcess *DesktopSession::launch(const QString &program, const QStringList &arguments,
                                 const QProcessEnvironment &environment)
{
    auto process = makeChildProcess();
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(m_folder.path());
    process->setObjectName(u"%1/logs/%2-%3.log"_s.arg(m_folder.path())
                               .arg(++m_launches)
                               .arg(program.section(u'/', -1)));
    process->setStandardErrorFile(process->objectName());
    process->start(program, arguments);
    if (!process->waitForStarted(startBoundMs)) {
        fail(u"cannot start %1: %2"_s.arg(program, process->errorString()));
        return nullptr;
    }
    m_processes.push_back(std::move(process));
    return m_processes.back().get();
}

QByteArray DesktopSession::errorOutput(const QProcess *process) const
{
    QFile file(process->objectName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void DesktopSession::end(QProcess *process)
{
    const auto found = std::ranges::find(m_processes, process, &std::unique_ptr<QProcess>::get);
    if (found == m_processes.end())
        return;
    endProcess(**found);
    m_processes.erase(found);
}

QImage DesktopSession::screenshot() const
{
    const X11Peer peer(m_displayName);
    const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(peer.xcb())).data;
    return grabScreen(peer, {0, 0, screen->width_in_pixels, screen->height_in_pixels});
}

bool DesktopSession::fail(const QString &what)
{
    m_error = what;
    return false;
}

// Ends what the session's own programs have started in turn: the buses' services
// are children of nobody here, and most of them stay until they notice.
void DesktopSession::endStragglers()
{
    const QByteArray mark = (markName + u'=' + m_folder.path()).toUtf8() + '\0';
    const auto stragglers = [&] {
        std::vector<pid_t> found;
        const auto entries = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const auto &entry : entries) {
            bool isProcess = false;
            const auto pid = entry.toInt(&isProcess);
            QFile environ(u"/proc/%1/environ"_s.arg(entry));
            if (isProcess && environ.open(QIODevice::ReadOnly) && environ.readAll().contains(mark))
                found.push_back(pid);
        }
        return found;
    };
    for (const int signal : {SIGTERM, SIGKILL}) {
        for (const auto pid : stragglers())
            kill(pid, signal);
        if (waitUntil([&] { return stragglers().empty(); }, 1s))
            return;
    }
}

} // namespace nivora::test
