#include "secret_unlock.h"

#include "secret_bus.h"

#include <string>
#include <vector>

namespace nivora::linuxdesktop {

namespace {

constexpr const char *servicePath = "/org/freedesktop/secrets";
constexpr const char *serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char *promptInterface = "org.freedesktop.Secret.Prompt";
constexpr const char *defaultAlias = "default";
// What no object has for a path.
constexpr const char *nowhere = "/";

// Plain calls: libsecret's own way of waiting for a dialog cannot be cancelled
// cleanly.
class Unlocking
{
public:
    Unlocking(GDBusConnection *bus, GCancellable *cancellable)
        : m_bus(bus)
        , m_cancellable(cancellable)
    {
    }

    bool makeDefaultCollection(bool create);
    bool unlock(const QString &service);

private:
    using Paths = std::vector<std::string>;

    GlibPtr<GVariant> call(const char *method, GVariant *arguments, const char *answerType) const
    {
        return callBus(m_bus, m_cancellable, secretServiceName, servicePath, serviceInterface,
                       method, arguments, answerType);
    }
    std::string defaultCollection() const;
    void appendLockedItems(const QString &service, Paths &paths) const;
    bool finishPrompt(const std::string &path);

    GDBusConnection *m_bus;
    GCancellable *m_cancellable;
};

std::string Unlocking::defaultCollection() const
{
    const auto answer = call("ReadAlias", g_variant_new("(s)", defaultAlias), "(o)");
    const char *path = nowhere;
    if (answer)
        g_variant_get(answer.get(), "(&o)", &path);
    return path;
}

bool Unlocking::makeDefaultCollection(bool create)
{
    if (!create || defaultCollection() != nowhere)
        return true;
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Collection.Label",
                          g_variant_new_string("Default keyring"));
    const auto answer =
        call("CreateCollection", g_variant_new("(a{sv}s)", &properties, defaultAlias), "(oo)");
    if (!answer)
        return false;
    const char *prompt = nowhere;
    g_variant_get(answer.get(), "(&o&o)", nullptr, &prompt);
    return finishPrompt(prompt);
}

void Unlocking::appendLockedItems(const QString &service, Paths &paths) const
{
    GVariantBuilder attributes;
    g_variant_builder_init(&attributes, G_VARIANT_TYPE("a{ss}"));
    g_variant_builder_add(&attributes, "{ss}", "service", service.toUtf8().constData());
    const auto answer = call("SearchItems", g_variant_new("(a{ss})", &attributes), "(aoao)");
    if (!answer)
        return;
    const GlibPtr<GVariant> locked(g_variant_get_child_value(answer.get(), 1));
    GVariantIter items;
    g_variant_iter_init(&items, locked.get());
    const char *path = nullptr;
    while (g_variant_iter_next(&items, "&o", &path))
        paths.emplace_back(path);
}

bool Unlocking::unlock(const QString &service)
{
    Paths paths;
    if (const auto collection = defaultCollection(); collection != nowhere)
        paths.push_back(collection);
    appendLockedItems(service, paths);
    GVariantBuilder objects;
    g_variant_builder_init(&objects, G_VARIANT_TYPE("ao"));
    for (const auto &path : paths)
        g_variant_builder_add(&objects, "o", path.c_str());

    const auto answer = call("Unlock", g_variant_new("(ao)", &objects), "(aoo)");
    if (!answer)
        return false;
    const char *prompt = nowhere;
    g_variant_get(answer.get(), "(@ao&o)", nullptr, &prompt);
    return finishPrompt(prompt);
}

// The callbacks run below this function, in this thread's context.
bool Unlocking::finishPrompt(const std::string &path)
{
    if (path == nowhere)
        return true;

    struct State
    {
        bool over = false;
        bool dismissed = true;
    } state;
    const auto subscribe = [&](const char *sender, const char *interface, const char *signal,
                               const char *object, const char *argument,
                               GDBusSignalCallback callback) {
        return g_dbus_connection_signal_subscribe(m_bus, sender, interface, signal, object,
                                                  argument, G_DBUS_SIGNAL_FLAGS_NONE, callback,
                                                  &state, nullptr);
    };
    const guint completed =
        subscribe(secretServiceName, promptInterface, "Completed", path.c_str(), nullptr,
                  [](GDBusConnection *, const char *, const char *, const char *, const char *,
                     GVariant *parameters, gpointer data) {
                      auto &answered = *static_cast<State *>(data);
                      gboolean dismissed = TRUE;
                      if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(bv)")))
                          g_variant_get(parameters, "(b@v)", &dismissed, nullptr);
                      answered = {true, dismissed != FALSE};
                  });
    const guint gone =
        subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                  "/org/freedesktop/DBus", secretServiceName,
                  [](GDBusConnection *, const char *, const char *, const char *, const char *,
                     GVariant *, gpointer data) { static_cast<State *>(data)->over = true; });
    GMainContext *context = g_main_context_get_thread_default();
    // A cancellation must wake the loop.
    const gulong cancelled =
        g_cancellable_connect(m_cancellable, G_CALLBACK(+[](GCancellable *, gpointer data) {
                                  g_main_context_wakeup(static_cast<GMainContext *>(data));
                              }),
                              context, nullptr);

    state.over = !callBus(m_bus, m_cancellable, secretServiceName, path.c_str(), promptInterface,
                          "Prompt", g_variant_new("(s)", ""), "()");
    while (!state.over && !g_cancellable_is_cancelled(m_cancellable))
        g_main_context_iteration(context, TRUE);

    g_cancellable_disconnect(m_cancellable, cancelled);
    g_dbus_connection_signal_unsubscribe(m_bus, completed);
    g_dbus_connection_signal_unsubscribe(m_bus, gone);
    return !state.dismissed;
}

} // namespace

bool unlockKeyring(const QString &service, bool create, GCancellable *cancellable)
{
    const auto bus = openSessionBus(cancellable);
    if (!bus)
        return false;
    Unlocking unlocking(bus.get(), cancellable);
    return unlocking.makeDefaultCollection(create) && unlocking.unlock(service);
}

} // namespace nivora::linuxdesktop
