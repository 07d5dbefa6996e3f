#include "platform_linux/portal_appearance.h"

#include "session_bus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMap>
#include <QVariantMap>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

using SettingsByNamespace = QMap<QString, QVariantMap>;

// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
const auto portalName = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto settingsInterface = u"org.freedesktop.portal.Settings"_s;
const auto commonSettings = u"org.freedesktop.appearance"_s;
const auto gtkSettings = u"org.gnome.desktop.interface"_s;
constexpr int answerLimit = 2000; // milliseconds

// Values of color-scheme.
constexpr uint schemeDark = 1;
constexpr uint schemeLight = 2;

// Values come wrapped once or twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

class PortalWatch final : public QObject
{
    Q_OBJECT

public:
    std::function<void(const QString &, const QString &, const QVariant &)> onChange;

public Q_SLOTS:
    void changed(const QString &nameSpace, const QString &key, const QDBusVariant &value)
    {
        onChange(nameSpace, key, value.variant());
    }
};

class WatchOperation final : public platform::Operation
{
public:
    explicit WatchOperation(std::function<void(const platform::DesktopAppearance &)> changed)
        : m_changed(std::move(changed))
    {
        // The library would launch a bus of its own where there is none.
        if (!isSessionBusNamed() || !QDBusConnection::sessionBus().isConnected())
            return;
        qDBusRegisterMetaType<SettingsByNamespace>();
        m_portal.onChange = [this](const QString &nameSpace, const QString &key,
                                   const QVariant &value) {
            take(nameSpace, key, value);
            tell();
        };
        QDBusConnection::sessionBus().connect(portalName, portalPath, settingsInterface,
                                              u"SettingChanged"_s, &m_portal,
                                              SLOT(changed(QString, QString, QDBusVariant)));

        auto question =
            QDBusMessage::createMethodCall(portalName, portalPath, settingsInterface, u"ReadAll"_s);
        question << QStringList{commonSettings, gtkSettings};
        m_answer = std::make_unique<QDBusPendingCallWatcher>(
            QDBusConnection::sessionBus().asyncCall(question, answerLimit));
        connect(
            m_answer.get(), &QDBusPendingCallWatcher::finished, this, [this] { answered(); },
            Qt::QueuedConnection);
    }

private:
    void answered()
    {
        const QDBusPendingReply<SettingsByNamespace> reply(*m_answer);
        if (reply.isError())
            return;
        const SettingsByNamespace all = reply.value();
        for (auto group = all.begin(); group != all.end(); ++group) {
            for (auto entry = group->begin(); entry != group->end(); ++entry)
                take(group.key(), entry.key(), entry.value());
        }
        tell();
    }

    void take(const QString &nameSpace, const QString &key, const QVariant &wrapped)
    {
        const QVariant value = unwrapped(wrapped);
        if (nameSpace == commonSettings && key == "color-scheme"_L1) {
            const uint scheme = value.toUInt();
            m_now.prefersDark.reset();
            if (scheme == schemeDark || scheme == schemeLight)
                m_now.prefersDark = scheme == schemeDark;
        } else if (nameSpace == commonSettings && key == "reduced-motion"_L1) {
            m_reducedForAll = value.toUInt() != 0;
        } else if (nameSpace == gtkSettings && key == "enable-animations"_L1) {
            m_reducedForGtk = !value.toBool();
        }
        m_now.reducedMotion = m_reducedForAll || m_reducedForGtk;
    }

    void tell()
    {
        if (m_told == m_now)
            return;
        m_told = m_now;
        deliver([this] { m_changed(m_now); });
    }

    void stop() override
    {
        m_answer.reset();
        QDBusConnection::sessionBus().disconnect(portalName, portalPath, settingsInterface,
                                                 u"SettingChanged"_s, &m_portal,
                                                 SLOT(changed(QString, QString, QDBusVariant)));
    }

    std::function<void(const platform::DesktopAppearance &)> m_changed;
    PortalWatch m_portal;
    std::unique_ptr<QDBusPendingCallWatcher> m_answer;
    platform::DesktopAppearance m_now;
    std::optional<platform::DesktopAppearance> m_told;
    bool m_reducedForAll = false;
    bool m_reducedForGtk = false;
};

} // namespace

platform::Task
PortalAppearance::watch(std::function<void(const platform::DesktopAppearance &)> changed)
{
    return platform::Task(new WatchOperation(std::move(changed)));
}

} // namespace nivora::linuxdesktop

#include "portal_appearance.moc"
