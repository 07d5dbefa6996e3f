#include "atspi_calls.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace nivora::linuxdesktop {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isTimeout(QDBusError::ErrorType type)
{
    return type == QDBusError::NoReply || type == QDBusError::Timeout ||
           type == QDBusError::TimedOut;
}

// The argument as a container of exactly this D-Bus type. Programs answer what
// they like.
std::optional<QDBusArgument> container(const QVariantList &arguments, QLatin1StringView signature)
{
    if (arguments.isEmpty() || arguments.first().metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto argument = arguments.first().value<QDBusArgument>();
    if (argument.currentSignature() != signature)
        return std::nullopt;
    return argument;
}

AtspiObject readObject(const QDBusArgument &argument)
{
    AtspiObject object;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> object.service >> path;
    argument.endStructure();
    object.path = path.path();
    return object;
}

} // namespace

QDBusPendingCall AtspiCalls::send(QDBusMessage message)
{
    if (isOver())
        return QDBusPendingCall::fromError(QDBusError(QDBusError::Timeout, QString()));
    message.setAutoStartService(false);
    return m_bus.asyncCall(message, static_cast<int>(m_deadline.remainingTime()) + 1);
}

QDBusPendingCall AtspiCalls::send(const AtspiObject &object, QLatin1StringView interface,
                                  QLatin1StringView method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(object.service, object.path, interface, method);
    message.setArguments(arguments);
    return send(message);
}

QDBusPendingCall AtspiCalls::sendGet(const AtspiObject &object, QLatin1StringView interface,
                                     QLatin1StringView property)
{
    return send(object, "org.freedesktop.DBus.Properties"_L1, "Get"_L1,
                {QString(interface), QString(property)});
}

QDBusPendingCall AtspiCalls::sendProcessOf(const QString &service)
{
    return send({u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s}, "org.freedesktop.DBus"_L1,
                "GetConnectionUnixProcessID"_L1, {service});
}

QVariantList AtspiCalls::arguments(QDBusPendingCall call)
{
    // Answers that have arrived are of use even after the deadline.
    if (isOver() && !call.isFinished())
        return {};
    call.waitForFinished();
    if (call.isError()) {
        m_over = m_over || isTimeout(call.error().type());
        return {};
    }
    return call.reply().arguments();
}

QVariant AtspiCalls::property(QDBusPendingCall call)
{
    return arguments(std::move(call)).value(0).value<QDBusVariant>().variant();
}

std::vector<AtspiObject> AtspiCalls::objects(QDBusPendingCall call)
{
    std::vector<AtspiObject> objects;
    const auto list = container(arguments(std::move(call)), "a(so)"_L1);
    if (!list)
        return objects;
    list->beginArray();
    while (!list->atEnd())
        objects.push_back(readObject(*list));
    list->endArray();
    return objects;
}

std::optional<AtspiObject> AtspiCalls::object(QDBusPendingCall call)
{
    const auto structure = container(arguments(std::move(call)), "(so)"_L1);
    return structure ? std::optional(readObject(*structure)) : std::nullopt;
}

QStringList AtspiCalls::strings(QDBusPendingCall call)
{
    return arguments(std::move(call)).value(0).toStringList();
}

quint64 AtspiCalls::states(QDBusPendingCall call)
{
    const auto list = container(arguments(std::move(call)), "au"_L1);
    if (!list)
        return 0;
    const auto words = qdbus_cast<QList<uint>>(*list);
    return words.value(0) | quint64(words.value(1)) << 32;
}

qint64 AtspiCalls::processId(QDBusPendingCall call)
{
    return arguments(std::move(call)).value(0).toUInt();
}

} // namespace nivora::linuxdesktop
