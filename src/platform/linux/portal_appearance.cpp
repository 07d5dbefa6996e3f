#include "platform_linux/portal_appearance.h"

#include "portal_settings.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

const auto commonSettings = u"org.freedesktop.appearance"_s;
const auto gtkSettings = u"org.gnome.desktop.interface"_s;

// Values of color-scheme.
constexpr uint schemeDark = 1;
constexpr uint schemeLight = 2;

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
        if (!portal::isReachable())
            return;
        m_portal.onChange = [this](const QString &nameSpace, const QString &key,
                                   const QVariant &value) {
            take(nameSpace, key, value);
            tell();
        };
        // The library finds a slot only if it knows the slot's types by their names.
        qRegisterMetaType<QDBusVariant>();
        QDBusConnection::sessionBus().connect(
            portal::service, portal::path, portal::settingsInterface, u"SettingChanged"_s,
            &m_portal, SLOT(changed(QString, QString, QDBusVariant)));

        m_answer = std::make_unique<QDBusPendingCallWatcher>(
            portal::readSettings({commonSettings, gtkSettings}));
        connect(
            m_answer.get(), &QDBusPendingCallWatcher::finished, this, [this] { answered(); },
            Qt::QueuedConnection);
    }

private:
    void answered()
    {
        const portal::Answer reply(*m_answer);
        if (reply.isError())
            return;
        const portal::SettingsByNamespace all = reply.value();
        for (auto group = all.begin(); group != all.end(); ++group) {
            for (auto entry = group->begin(); entry != group->end(); ++entry)
                take(group.key(), entry.key(), entry.value());
        }
        tell();
    }

    void take(const QString &nameSpace, const QString &key, const QVariant &wrapped)
    {
        const QVariant value = portal::unwrapped(wrapped);
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
        QDBusConnection::sessionBus().disconnect(
            portal::service, portal::path, portal::settingsInterface, u"SettingChanged"_s,
            &m_portal, SLOT(changed(QString, QString, QDBusVariant)));
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
