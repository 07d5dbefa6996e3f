#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

namespace nivora::test {

// The part of a desktop portal that tells the user's settings, on this bus for as
// long as the object lives.
class SettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    using Settings = QMap<QString, QVariantMap>;

    explicit SettingsPortal(const QString &busAddress, const Settings &settings = {});
    ~SettingsPortal() override;

    bool isValid() const { return m_isValid; }
    // Changes a setting and tells so.
    void set(const QString &group, const QString &key, const QVariant &value);

public Q_SLOTS:
    QMap<QString, QVariantMap> ReadAll(const QStringList &) { return m_settings; }

Q_SIGNALS:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    Settings m_settings;
    QString m_connectionName;
    bool m_isValid;
};

} // namespace nivora::test
