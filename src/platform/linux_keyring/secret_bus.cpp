#include "secret_bus.h"

namespace nivora::linuxdesktop {

GlibPtr<GDBusConnection> openSessionBus(GCancellable *cancellable)
{
    GlibPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr));
    // A bus that goes away would otherwise take the program with it.
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus;
}

GlibPtr<GVariant> callBus(GDBusConnection *bus, GCancellable *cancellable, const char *name,
                          const char *path, const char *interface, const char *method,
                          GVariant *arguments, const char *answerType)
{
    return GlibPtr<GVariant>(g_dbus_connection_call_sync(
        bus, name, path, interface, method, arguments, G_VARIANT_TYPE(answerType),
        G_DBUS_CALL_FLAGS_NONE, -1, cancellable, nullptr));
}

bool isKeyringInReach(GDBusConnection *bus, GCancellable *cancellable)
{
    const auto ask = [&](const char *method, GVariant *arguments, const char *answerType) {
        return callBus(bus, cancellable, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                       "org.freedesktop.DBus", method, arguments, answerType);
    };
    gboolean hasOwner = FALSE;
    if (const auto answer = ask("NameHasOwner", g_variant_new("(s)", secretServiceName), "(b)"))
        g_variant_get(answer.get(), "(b)", &hasOwner);
    if (hasOwner)
        return true;

    const auto answer = ask("ListActivatableNames", nullptr, "(as)");
    if (!answer)
        return false;
    const GlibPtr<GVariant> names(g_variant_get_child_value(answer.get(), 0));
    const std::unique_ptr<const char *, decltype(&g_free)> list(
        g_variant_get_strv(names.get(), nullptr), g_free);
    return g_strv_contains(list.get(), secretServiceName);
}

} // namespace nivora::linuxdesktop
