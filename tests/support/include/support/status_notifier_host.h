#pragma once

#include <QDBusConnection>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace nivora::test {

// A panel that shows tray icons of the session bus: it watches for items, hosts
// them and works their menus, as freedesktop.org's StatusNotifierItem and
// Canonical's dbusmenu tell. It answers while this thread serves its events.
class StatusNotifierHost
{
public:
    explicit StatusNotifierHost(const QString &busAddress);
    ~StatusNotifierHost();
    StatusNotifierHost(const StatusNotifierHost &) = delete;
    StatusNotifierHost &operator=(const StatusNotifierHost &) = delete;

    // Takes its name on the bus, as a panel that starts.
    bool appear();
    // Leaves the bus with all it knew, as a panel that dies.
    void vanish();

    // The unique names of the programs that have shown an icon since it appeared.
    QStringList items() const;
    std::vector<QSize> iconSizes() const;

    struct Entry
    {
        int id = 0;
        int depth = 0; // 1 in a submenu
        QString label; // empty for a divider
        bool enabled = true;
    };
    // What shows in the menu of the first item, in its order.
    std::vector<Entry> menu() const;
    // Presses the entry of this label; false when there is none that can be.
    bool press(const QString &label) const;

private:
    class Watcher;

    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments) const;
    QVariant itemProperty(const QString &name) const;

    QString m_address;
    std::optional<QDBusConnection> m_bus;
    std::unique_ptr<Watcher> m_watcher;
};

} // namespace nivora::test
