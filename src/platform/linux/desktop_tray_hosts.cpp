#include "platform_linux/desktop_tray_hosts.h"

#include "session_bus.h"
#include "x11_tray_manager.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <memory>
#include <optional>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

// https://www.freedesktop.org/wiki/Specifications/StatusNotifierItem/
const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;
const auto hostEvents = {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s};
constexpr int answerLimit = 2000; // milliseconds

class WatchOperation final : public platform::Operation
{
    Q_OBJECT

public:
    WatchOperation(X11TrayManager &manager, std::function<void(bool)> changed)
        : m_manager(manager)
        , m_changed(std::move(changed))
    {
        m_manager.watch([this] { tell(); });
        // The library would launch a bus of its own where there is none.
        if (!isSessionBusNamed() || !QDBusConnection::sessionBus().isConnected()) {
            m_onBus = false;
            m_soon = platform::delay(0ms, [this] { tell(); });
            return;
        }
        auto bus = QDBusConnection::sessionBus();
        m_names = std::make_unique<QDBusServiceWatcher>(watcherName, bus);
        connect(m_names.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
                &WatchOperation::ask);
        for (const QString &event : hostEvents)
            bus.connect(QString(), watcherPath, watcherName, event, this, SLOT(ask()));
        ask();
    }

private Q_SLOTS:
    void ask()
    {
        m_onBus.reset();
        auto question = QDBusMessage::createMethodCall(
            watcherName, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << watcherName << u"IsStatusNotifierHostRegistered"_s;
        question.setAutoStartService(false);
        m_answer = std::make_unique<QDBusPendingCallWatcher>(
            QDBusConnection::sessionBus().asyncCall(question, answerLimit));
        connect(
            m_answer.get(), &QDBusPendingCallWatcher::finished, this, [this] { answered(); },
            Qt::QueuedConnection);
    }

private:
    void answered()
    {
        const QDBusPendingReply<QDBusVariant> reply(*m_answer);
        const auto error = reply.error().type();
        if (error == QDBusError::NoReply || error == QDBusError::TimedOut)
            return;
        m_onBus = !reply.isError() && reply.value().variant().toBool();
        tell();
    }

    void tell()
    {
        if (!m_onBus)
            return;
        const bool present = *m_onBus || m_manager.isPresent();
        if (std::exchange(m_told, present) != present)
            deliver([&] { m_changed(present); });
    }

    void stop() override
    {
        m_manager.watch({});
        m_soon.cancel();
        m_answer.reset();
        m_names.reset();
        for (const QString &event : hostEvents)
            QDBusConnection::sessionBus().disconnect(QString(), watcherPath, watcherName, event,
                                                     this, SLOT(ask()));
    }

    X11TrayManager &m_manager;
    std::function<void(bool)> m_changed;
    platform::Task m_soon;
    std::unique_ptr<QDBusServiceWatcher> m_names;
    std::unique_ptr<QDBusPendingCallWatcher> m_answer;
    std::optional<bool> m_onBus; // absent while the bus is asked, or does not answer
    std::optional<bool> m_told;
};

} // namespace

DesktopTrayHosts::DesktopTrayHosts(X11TrayManager &manager)
    : m_manager(manager)
{
}

platform::Task DesktopTrayHosts::watch(std::function<void(bool)> changed)
{
    return platform::Task(new WatchOperation(m_manager, std::move(changed)));
}

} // namespace nivora::linuxdesktop

#include "desktop_tray_hosts.moc"
