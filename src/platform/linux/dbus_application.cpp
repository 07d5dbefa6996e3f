#include "platform_linux/dbus_application.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

const auto busName = u"app.nivora"_s;
const auto objectPath = u"/app/nivora"_s;
const auto applicationInterface = u"org.freedesktop.Application"_s;
constexpr int answerLimit = 2000; // milliseconds

// D-Bus specification, org.freedesktop.DBus.RequestName.
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint alreadyOwner = 4;

// https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html
class ApplicationObject : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationObject(DBusApplication &application) : m_application(application) {}

public Q_SLOTS:
    void Activate(const QVariantMap &) { Q_EMIT m_application.activated(); }

private:
    DBusApplication &m_application;
};

class AcquireOperation final : public platform::Operation
{
public:
    AcquireOperation(const QDBusPendingCall &request,
                     std::function<void(DBusApplication::Role)> done)
        : m_watcher(request), m_done(std::move(done))
    {
        connect(&m_watcher, &QDBusPendingCallWatcher::finished, this, [this] {
            const QDBusPendingReply<uint> reply(m_watcher);
            // Without a bus nobody else can be reached either.
            const bool taken = reply.isValid() && reply.value() != primaryOwner
                && reply.value() != alreadyOwner;
            if (taken)
                activateOther();
            finish([&] {
                m_done(taken ? DBusApplication::Role::Secondary : DBusApplication::Role::Primary);
            });
        });
    }

private:
    static void activateOther()
    {
        auto call = QDBusMessage::createMethodCall(busName, objectPath, applicationInterface,
                                                   u"Activate"_s);
        call << QVariantMap{};
        QDBusConnection::sessionBus().send(call);
    }

    void stop() override { m_watcher.disconnect(this); }

    QDBusPendingCallWatcher m_watcher;
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

platform::Task DBusApplication::acquire(std::function<void(Role)> done)
{
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
                                               u"/org/freedesktop/DBus"_s,
                                               u"org.freedesktop.DBus"_s, u"RequestName"_s);
    call << busName << doNotQueue;
    return platform::Task(new AcquireOperation(
        QDBusConnection::sessionBus().asyncCall(call, answerLimit), std::move(done)));
}

} // namespace nivora::linuxdesktop

#include "dbus_application.moc"
