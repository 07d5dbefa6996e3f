#include "portal_settings.h"

#include "session_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop::portal {

namespace {

constexpr int answerLimit = 2000; // milliseconds

} // namespace

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;

bool isReachable()
{
    // The library would launch a bus of its own where there is none.
    return isSessionBusNamed() && QDBusConnection::sessionBus().isConnected();
}

Answer readSettings(const QStringList &namespaces)
{
    qDBusRegisterMetaType<SettingsByNamespace>();
    auto question = QDBusMessage::createMethodCall(service, path, settingsInterface, u"ReadAll"_s);
    question << namespaces;
    return QDBusConnection::sessionBus().asyncCall(question, answerLimit);
}

QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace nivora::linuxdesktop::portal
