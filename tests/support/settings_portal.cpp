#include "support/settings_portal.h"

#include <QDBusMetaType>
#include <QUuid>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

SettingsPortal::SettingsPortal(const QString &busAddress, const Settings &settings)
    : m_settings(settings)
    , m_connectionName(QUuid::createUuid().toString())
{
    qDBusRegisterMetaType<Settings>();
    auto bus = QDBusConnection::connectToBus(busAddress, m_connectionName);
    m_isValid = bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                                   QDBusConnection::ExportAllContents) &&
                bus.registerService(u"org.freedesktop.portal.Desktop"_s);
}

SettingsPortal::~SettingsPortal()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void SettingsPortal::set(const QString &group, const QString &key, const QVariant &value)
{
    m_settings[group][key] = value;
    Q_EMIT SettingChanged(group, key, QDBusVariant(value));
}

} // namespace nivora::test
