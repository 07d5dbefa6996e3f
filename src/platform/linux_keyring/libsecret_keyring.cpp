#include "platform_linux_keyring/libsecret_keyring.h"

#include "secret_bus.h"
#include "secret_glib.h"
#include "secret_unlock.h"

#include <libsecret/secret.h>

namespace nivora::linuxdesktop {

using platform::SecretBytes;

namespace {

// Items are found by their attributes alone, so that one stored with another
// tool counts as well.
const SecretSchema schema{"app.nivora",
                          SECRET_SCHEMA_DONT_MATCH_NAME,
                          {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                           {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                           {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                          0,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr,
                          nullptr};

constexpr const char *itemLabel = "Nivora";
constexpr const char *contentType = "text/plain";

struct ValueRelease
{
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
using ValuePtr = std::unique_ptr<SecretValue, ValueRelease>;

GlibPtr<GHashTable> attributesOf(const SecretName &name)
{
    return GlibPtr<GHashTable>(secret_attributes_build(&schema, "service",
                                                       name.service.toUtf8().constData(), "account",
                                                       name.account.toUtf8().constData(), nullptr));
}

ValuePtr valueOf(const SecretBytes &secret)
{
    return ValuePtr(secret_value_new((*secret).constData(), gssize((*secret).size()), contentType));
}

SecretBytes bytesOf(SecretValue *value)
{
    gsize length = 0;
    const char *bytes = secret_value_get(value, &length);
    return QByteArray(bytes, qsizetype(length));
}

SecretItem *itemOf(const GList *link)
{
    return SECRET_ITEM(link->data);
}

class LibsecretKeyring final : public Keyring
{
public:
    Outcome read(const SecretName &name, platform::SecretBytes &secret) override;
    Outcome write(const SecretName &name, const platform::SecretBytes &secret) override;
    Outcome remove(const SecretName &name) override;
    void handlePending() override;
    bool unlock(const QString &service, bool create) override;
    void cancel() override;

private:
    template<typename Call>
    Outcome attempt(Call &&call);

    Outcome connect();
    void disconnect();

    GlibThreadContext m_context;
    GlibPtr<GCancellable> m_cancellable{g_cancellable_new()};
    GlibPtr<GDBusConnection> m_bus;
    GlibPtr<SecretService> m_service;
};

} // namespace

Keyring::Outcome LibsecretKeyring::connect()
{
    if (m_service && !g_dbus_connection_is_closed(m_bus.get()))
        return Outcome::Done;
    disconnect();
    if (!m_bus || g_dbus_connection_is_closed(m_bus.get())) {
        // The old one first: GLib hands out one connection for all.
        m_bus.reset();
        m_bus = openSessionBus(m_cancellable.get());
    }
    if (!m_bus || !isKeyringInReach(m_bus.get(), m_cancellable.get()))
        return Outcome::Unavailable;
    GlibError error;
    m_service.reset(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr,
                                             SECRET_SERVICE_OPEN_SESSION, m_cancellable.get(),
                                             error.out()));
    if (m_service)
        return Outcome::Done;
    return error.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ? Outcome::TimedOut : Outcome::Unavailable;
}

void LibsecretKeyring::disconnect()
{
    m_service.reset();
}

// A keyring that was restarted does not know our session any more: a call that
// fails is made once again over a new one.
template<typename Call>
Keyring::Outcome LibsecretKeyring::attempt(Call &&call)
{
    for (int tries = 0; tries < 2; ++tries) {
        if (const auto connected = connect(); connected != Outcome::Done)
            return connected;
        GlibError error;
        const Outcome outcome = call(error);
        if (!error)
            return outcome;
        if (error.is(SECRET_ERROR, SECRET_ERROR_IS_LOCKED))
            return Outcome::Locked;
        disconnect();
        if (error.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
            return Outcome::TimedOut;
        if (error.is(G_IO_ERROR, G_IO_ERROR_CANCELLED))
            break;
    }
    return Outcome::Unavailable;
}

Keyring::Outcome LibsecretKeyring::read(const SecretName &name, SecretBytes &secret)
{
    return attempt([&](GlibError &error) {
        const auto attributes = attributesOf(name);
        const GlibPtr<GList> items(secret_service_search_sync(
            m_service.get(), &schema, attributes.get(), SECRET_SEARCH_LOAD_SECRETS,
            m_cancellable.get(), error.out()));
        if (!items)
            return Outcome::Absent;
        if (secret_item_get_locked(itemOf(items.get())))
            return Outcome::Locked;
        const ValuePtr value(secret_item_get_secret(itemOf(items.get())));
        if (!value)
            return Outcome::Unavailable;
        secret = bytesOf(value.get());
        return Outcome::Done;
    });
}

Keyring::Outcome LibsecretKeyring::write(const SecretName &name, const SecretBytes &secret)
{
    return attempt([&](GlibError &error) {
        const auto attributes = attributesOf(name);
        const auto value = valueOf(secret);
        const GlibPtr<GList> items(secret_service_search_sync(m_service.get(), &schema,
                                                              attributes.get(), SECRET_SEARCH_NONE,
                                                              m_cancellable.get(), error.out()));
        if (error)
            return Outcome::Unavailable;
        if (items) {
            if (secret_item_get_locked(itemOf(items.get())))
                return Outcome::Locked;
            secret_item_set_secret_sync(itemOf(items.get()), value.get(), m_cancellable.get(),
                                        error.out());
            return Outcome::Done;
        }
        const GlibPtr<SecretCollection> collection(secret_collection_for_alias_sync(
            m_service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, m_cancellable.get(),
            error.out()));
        // To make an item in a locked keyring is to wait for the user.
        if (!collection || secret_collection_get_locked(collection.get()))
            return Outcome::Locked;
        const GlibPtr<SecretItem> created(secret_item_create_sync(
            collection.get(), &schema, attributes.get(), itemLabel, value.get(),
            SECRET_ITEM_CREATE_REPLACE, m_cancellable.get(), error.out()));
        return Outcome::Done;
    });
}

Keyring::Outcome LibsecretKeyring::remove(const SecretName &name)
{
    return attempt([&](GlibError &error) {
        const auto attributes = attributesOf(name);
        const GlibPtr<GList> items(secret_service_search_sync(m_service.get(), &schema,
                                                              attributes.get(), SECRET_SEARCH_ALL,
                                                              m_cancellable.get(), error.out()));
        Outcome outcome = Outcome::Done;
        for (const GList *link = items.get(); link && !error; link = link->next) {
            if (secret_item_get_locked(itemOf(link)))
                outcome = Outcome::Locked;
            else
                secret_item_delete_sync(itemOf(link), m_cancellable.get(), error.out());
        }
        return outcome;
    });
}

void LibsecretKeyring::handlePending()
{
    m_context.handlePending();
}

bool LibsecretKeyring::unlock(const QString &service, bool create)
{
    const GlibThreadContext context;
    return unlockKeyring(service, create, m_cancellable.get());
}

void LibsecretKeyring::cancel()
{
    g_cancellable_cancel(m_cancellable.get());
}

std::unique_ptr<Keyring> makeLibsecretKeyring()
{
    return std::make_unique<LibsecretKeyring>();
}

} // namespace nivora::linuxdesktop
