#include "support/status_notifier_host.h"

#include "support/wait.h"

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QUuid>

#include <algorithm>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto menuInterface = u"com.canonical.dbusmenu"_s;

// One node of a layout, "(ia{sv}av)", and what lies below it.
void collect(const QDBusArgument &node, int depth, std::vector<StatusNotifierHost::Entry> &entries)
{
    StatusNotifierHost::Entry entry;
    entry.depth = depth;
    QVariantMap properties;
    QVariantList children;
    node.beginStructure();
    node >> entry.id >> properties >> children;
    node.endStructure();
    if (!properties.value(u"visible"_s, true).toBool())
        return;
    entry.label = properties.value(u"label"_s).toString();
    entry.enabled = properties.value(u"enabled"_s, true).toBool();
    if (entry.id != 0)
        entries.push_back(entry);
    for (const QVariant &child : std::as_const(children))
        collect(child.value<QDBusArgument>(), entry.id == 0 ? 0 : depth + 1, entries);
}

} // namespace

class StatusNotifierHost::Watcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    bool hasHost() const { return true; }

    QStringList items;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &) { items.append(message().service()); }
};

StatusNotifierHost::StatusNotifierHost(const QString &busAddress)
    : m_address(busAddress)
{
}

StatusNotifierHost::~StatusNotifierHost()
{
    vanish();
}

bool StatusNotifierHost::appear()
{
    m_watcher = std::make_unique<Watcher>();
    m_bus = QDBusConnection::connectToBus(m_address, QUuid::createUuid().toString());
    return m_bus->registerObject(u"/StatusNotifierWatcher"_s, m_watcher.get(),
                                 QDBusConnection::ExportAllContents) &&
           m_bus->registerService(watcherName);
}

void StatusNotifierHost::vanish()
{
    if (m_bus)
        QDBusConnection::disconnectFromBus(m_bus->name());
    m_bus.reset();
    m_watcher.reset();
}

QStringList StatusNotifierHost::items() const
{
    return m_watcher ? m_watcher->items : QStringList();
}

QDBusMessage StatusNotifierHost::call(const QString &path, const QString &interface,
                                      const QString &method, const QVariantList &arguments) const
{
    if (items().isEmpty())
        return {};
    auto message =
        QDBusMessage::createMethodCall(m_watcher->items.first(), path, interface, method);
    message.setArguments(arguments);
    // The item may have a question of its own before it answers.
    const QDBusPendingCall answer = m_bus->asyncCall(message);
    waitUntil([&] { return answer.isFinished(); }, 5s);
    return answer.reply();
}

QVariant StatusNotifierHost::itemProperty(const QString &name) const
{
    const auto answer = call(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
                             u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

std::vector<QSize> StatusNotifierHost::iconSizes() const
{
    std::vector<QSize> sizes;
    const QVariant value = itemProperty(u"IconPixmap"_s);
    if (!value.canConvert<QDBusArgument>())
        return sizes;
    const auto pictures = value.value<QDBusArgument>();
    pictures.beginArray();
    while (!pictures.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        pictures.beginStructure();
        pictures >> width >> height >> pixels;
        pictures.endStructure();
        sizes.emplace_back(width, height);
    }
    pictures.endArray();
    return sizes;
}

std::vector<StatusNotifierHost::Entry> StatusNotifierHost::menu() const
{
    std::vector<Entry> entries;
    const auto path = itemProperty(u"Menu"_s).value<QDBusObjectPath>().path();
    const auto layout = call(path, menuInterface, u"GetLayout"_s, {0, -1, QStringList()});
    if (layout.arguments().size() == 2)
        collect(layout.arguments().at(1).value<QDBusArgument>(), 0, entries);
    return entries;
}

bool StatusNotifierHost::press(const QString &label) const
{
    const auto entries = menu();
    const auto found = std::ranges::find(entries, label, &Entry::label);
    if (found == entries.end() || !found->enabled)
        return false;
    const auto path = itemProperty(u"Menu"_s).value<QDBusObjectPath>().path();
    const auto answer = call(path, menuInterface, u"Event"_s,
                             {found->id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace nivora::test

#include "status_notifier_host.moc"
