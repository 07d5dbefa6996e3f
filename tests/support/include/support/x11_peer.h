#pragma once

#include <QByteArray>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

namespace nivora::test {

// Another client of the X server that does exactly what a test tells it to, well
// or badly behaved. Its events are served by this thread's event loop.
class X11Peer
{
public:
    explicit X11Peer(const QByteArray &displayName)
        : m_connection(xcb_connect(displayName.constData(), nullptr))
        , m_notifier(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read)
    {
        if (xcb_connection_has_error(m_connection))
            return;
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                         [this] { serve(); });
    }
    ~X11Peer()
    {
        m_notifier.setEnabled(false);
        xcb_disconnect(m_connection);
    }
    X11Peer(const X11Peer &) = delete;
    X11Peer &operator=(const X11Peer &) = delete;

    xcb_connection_t *xcb() const { return m_connection; }
    xcb_window_t root() const { return m_root; }

    std::function<void(const xcb_generic_event_t &)> onEvent;

    template<typename Reply>
    static std::unique_ptr<Reply, decltype(&std::free)> hold(Reply *reply)
    {
        return {reply, &std::free};
    }

    xcb_atom_t atom(const QByteArray &name) const
    {
        const auto reply = hold(xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.constData()),
            nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_NONE);
    }

    // Returns once the server has done what was asked.
    void synchronise()
    {
        hold(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
        serve();
    }

    xcb_window_t createWindow(uint32_t events, xcb_window_t parent = XCB_NONE) const
    {
        const xcb_window_t window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, parent ? parent : m_root, 10,
                          10, 200, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
        return window;
    }

    void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                     const QByteArray &bytes) const
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            uint32_t(bytes.size()), bytes.constData());
    }

    // A copy of the whole property, of any type.
    QByteArray property(xcb_window_t window, xcb_atom_t property) const
    {
        const auto reply =
            hold(xcb_get_property_reply(m_connection,
                                        xcb_get_property(m_connection, 0, window, property,
                                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 22),
                                        nullptr));
        return reply ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                  xcb_get_property_value_length(reply.get()))
                     : QByteArray();
    }

    void own(xcb_atom_t selection, xcb_window_t window)
    {
        xcb_set_selection_owner(m_connection, window, selection, XCB_CURRENT_TIME);
        synchronise();
    }

    bool owns(xcb_atom_t selection, xcb_window_t window) const
    {
        const auto reply = hold(xcb_get_selection_owner_reply(
            m_connection, xcb_get_selection_owner(m_connection, selection), nullptr));
        return reply && reply->owner == window;
    }

    // Answers a request for a selection; XCB_NONE as property refuses it.
    void notify(const xcb_selection_request_event_t &request, xcb_atom_t property) const
    {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = property;
        xcb_send_event(m_connection, 0, request.requestor, 0,
                       reinterpret_cast<const char *>(&event));
        xcb_flush(m_connection);
    }

    // Answers with these bytes, or atoms, in one piece.
    void answer(const xcb_selection_request_event_t &request, xcb_atom_t type,
                const QByteArray &bytes) const
    {
        setProperty(request.requestor, request.property, type, bytes);
        notify(request, request.property);
    }
    void answer(const xcb_selection_request_event_t &request,
                const std::vector<xcb_atom_t> &atoms) const
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, XCB_ATOM_ATOM, 32, uint32_t(atoms.size()),
                            atoms.data());
        notify(request, request.property);
    }

    void serve()
    {
        while (const auto event = hold(xcb_poll_for_event(m_connection))) {
            if (onEvent)
                onEvent(*event);
        }
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t *m_connection;
    QSocketNotifier m_notifier;
    xcb_window_t m_root = XCB_NONE;
};

} // namespace nivora::test
