#pragma once

#include <gio/gio.h>

#include <memory>

namespace nivora::linuxdesktop {

struct GlibRelease
{
    void operator()(GList *objects) const { g_list_free_full(objects, g_object_unref); }
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    template<typename Object>
    void operator()(Object *object) const
    {
        g_object_unref(object);
    }
};

// Owns one reference; a GList owns its objects too.
template<typename T>
using GlibPtr = std::unique_ptr<T, GlibRelease>;

// The error of one call.
class GlibError
{
public:
    GlibError() = default;
    ~GlibError() { g_clear_error(&m_error); }
    GlibError(const GlibError &) = delete;
    GlibError &operator=(const GlibError &) = delete;

    GError **out()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    bool is(GQuark domain, int code) const { return g_error_matches(m_error, domain, code); }
    explicit operator bool() const { return m_error != nullptr; }

private:
    GError *m_error = nullptr;
};

// A main context of this thread's own for as long as the object lives. Without
// it, what GLib has to tell this thread would be delivered on the main thread.
class GlibThreadContext
{
public:
    GlibThreadContext()
        : m_context(g_main_context_new())
    {
        g_main_context_push_thread_default(m_context.get());
    }
    ~GlibThreadContext()
    {
        handlePending();
        g_main_context_pop_thread_default(m_context.get());
    }
    GlibThreadContext(const GlibThreadContext &) = delete;
    GlibThreadContext &operator=(const GlibThreadContext &) = delete;

    void handlePending()
    {
        while (g_main_context_iteration(m_context.get(), FALSE)) {
        }
    }

private:
    GlibPtr<GMainContext> m_context;
};

} // namespace nivora::linuxdesktop
