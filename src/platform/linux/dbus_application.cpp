#include "platform_linux/dbus_application.h"

#include "platform/log.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora::linuxdesktop {

namespace {

const auto busName = u"app.nivora"_s;
const auto objectPath = u"/app/nivora"_s;
const auto applicationInterface = u"org.freedesktop.Application"_s;
constexpr int answerLimit = 2000; // milliseconds

// Flags and answers of org.freedesktop.DBus.RequestName.
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint alreadyOwner = 4;

// https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html
class ApplicationObject : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationObject(DBusApplication &application)
        : m_application(application)
    {
    }

public Q_SLOTS:
    void Activate(const QVariantMap &) { Q_EMIT m_application.activated(); }

    void Open(const QStringList &uris, const QVariantMap &) { m_application.open(uris); }

    void ActivateAction(const QString &name, const QVariantList &, const QVariantMap &)
    {
        Q_EMIT m_application.actionRequested(name);
    }

private:
    DBusApplication &m_application;
};

class AcquireOperation final : public platform::Operation
{
public:
    AcquireOperation(const QStringList &links, std::function<void(DBusApplication::Role)> done)
        : m_links(links)
        , m_done(std::move(done))
    {
        auto request =
            QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                           u"org.freedesktop.DBus"_s, u"RequestName"_s);
        request << busName << doNotQueue;
        call(request, [this] {
            const QDBusPendingReply<uint> reply(*m_watcher);
            // Where the bus does not answer, nobody else can be reached either.
            const bool taken =
                reply.isValid() && reply.value() != primaryOwner && reply.value() != alreadyOwner;
            taken ? callOther() : end(DBusApplication::Role::Primary);
        });
    }

private:
    void call(const QDBusMessage &message, const std::function<void()> &answered)
    {
        m_watcher = std::make_unique<QDBusPendingCallWatcher>(
            QDBusConnection::sessionBus().asyncCall(message, answerLimit));
        connect(m_watcher.get(), &QDBusPendingCallWatcher::finished, this, answered,
                Qt::QueuedConnection);
    }

    void callOther()
    {
        const bool opens = !m_links.isEmpty();
        auto request = QDBusMessage::createMethodCall(busName, objectPath, applicationInterface,
                                                      opens ? u"Open"_s : u"Activate"_s);
        if (opens)
            request << m_links;
        request << QVariantMap{};
        call(request, [this] { end(DBusApplication::Role::Secondary); });
    }

    void end(DBusApplication::Role role)
    {
        finish([&] { m_done(role); });
    }

    void stop() override { m_watcher->disconnect(this); }

    QStringList m_links;
    std::unique_ptr<QDBusPendingCallWatcher> m_watcher;
    std::function<void(DBusApplication::Role)> m_done;
};

} // namespace

DBusApplication::DBusApplication()
{
    auto *object = new ApplicationObject(*this);
    object->setParent(this);
    QDBusConnection::sessionBus().registerObject(objectPath, object,
                                                 QDBusConnection::ExportAllSlots);
}

DBusApplication::~DBusApplication()
{
    QDBusConnection::sessionBus().unregisterObject(objectPath);
}

void DBusApplication::open(const QStringList &links)
{
    for (const QString &each : links) {
        const QUrl link(each, QUrl::StrictMode);
        if (link.isValid() && link.scheme() == "nivora"_L1)
            Q_EMIT linkOpened(link);
        else
            qCWarning(log::app) << "A link was not opened: it is none of this program's";
    }
}

platform::Task DBusApplication::acquire(const QStringList &links, std::function<void(Role)> done)
{
    auto opening = [this, links, done = std::move(done)](Role role) {
        done(role);
        if (role == Role::Primary)
            open(links);
    };
    // Without a bus nobody else can be reached either, and a call would have no
    // answer at all, not even an error.
    if (!QDBusConnection::sessionBus().isConnected())
        return platform::delay(0ms, [opening = std::move(opening)] { opening(Role::Primary); });
    return platform::Task(new AcquireOperation(links, std::move(opening)));
}

} // namespace nivora::linuxdesktop

#include "dbus_application.moc"
