#pragma once

#include "x11_atoms.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QObject>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <deque>
#include <memory>
#include <type_traits>
#include <vector>

namespace nivora::linuxdesktop {

struct X11Free
{
    void operator()(void *memory) const { std::free(memory); }
};

// What xcb hands out and wants back through free().
template<typename T>
using X11Ptr = std::unique_ptr<T, X11Free>;

class X11EventHandler;

// One connection to the X server, used by the thread that made it alone.
//
// Events are handed to the handlers from this thread's event loop, never from
// within a call: those that arrive while a call waits for a reply are kept and
// handed out afterwards. No wait for the server lasts longer than waitLimit; a
// server that has not answered by then counts as one that said nothing.
// A connection that breaks is logged once and does nothing from then on.
class X11Connection : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds waitLimit{250};

    // An empty name stands for $DISPLAY.
    explicit X11Connection(const QByteArray &displayName);
    ~X11Connection() override;

    bool isValid() const { return m_valid; }
    xcb_connection_t *xcb() const { return m_connection; }
    xcb_window_t root() const { return m_root; }
    const QByteArray &displayName() const { return m_displayName; }
    xcb_atom_t atom(X11Atom atom) const { return m_atoms[static_cast<std::size_t>(atom)]; }

    // The reply to a request, as in reply<xcb_get_property_reply>(cookie). Null
    // when the server answered with an error or not in time.
    template<auto ReplyFunction, typename Cookie>
    auto reply(Cookie cookie)
    {
        using Reply = std::remove_pointer_t<decltype(ReplyFunction(nullptr, cookie, nullptr))>;
        return X11Ptr<Reply>(static_cast<Reply *>(waitForReply(cookie.sequence)));
    }

    bool hasExtension(xcb_extension_t &extension) const;

    // Sends what has been written so far.
    void flush();

    // Waits until the server has processed all requests so far.
    bool synchronise();

    // The server's clock now, in milliseconds. XCB_CURRENT_TIME when the server
    // did not answer.
    xcb_timestamp_t serverTime();

    std::vector<xcb_atom_t> intern(const QByteArrayList &names);
    QByteArrayList atomNames(const std::vector<xcb_atom_t> &atoms);

    // What has arrived and waits to be handed out, oldest first. Any call may add
    // to it.
    const std::deque<X11Ptr<xcb_generic_event_t>> &pendingEvents() const { return m_events; }

    // A window that is never shown, to own selections and to receive transfers.
    xcb_window_t createHiddenWindow(uint32_t eventMask);

    // The process at the other end of the connection that made the window,
    // 0 if the server cannot tell.
    qint64 processOf(xcb_window_t window);

private:
    friend class X11EventHandler;

    void *waitForReply(unsigned int sequence);
    void takeEvents();
    void scheduleDispatch();
    void dispatch();
    void checkError();

    QByteArray m_displayName;
    xcb_connection_t *m_connection = nullptr;
    bool m_valid = false;
    bool m_dispatchScheduled = false;
    xcb_window_t m_root = XCB_NONE;
    xcb_window_t m_clockWindow = XCB_NONE;
    std::vector<xcb_atom_t> m_atoms;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::deque<X11Ptr<xcb_generic_event_t>> m_events;
    std::vector<X11EventHandler *> m_handlers; // null: removed during a dispatch
};

// Sees every event of a connection for as long as it lives. The connection must
// live longer.
class X11EventHandler
{
public:
    explicit X11EventHandler(X11Connection &connection);
    virtual ~X11EventHandler();
    X11EventHandler(const X11EventHandler &) = delete;
    X11EventHandler &operator=(const X11EventHandler &) = delete;

    // May remove any handler, this one included.
    virtual void handleEvent(const xcb_generic_event_t &event) = 0;

protected:
    X11Connection &connection() const { return m_connection; }

private:
    X11Connection &m_connection;
};

// The kind of an event, whether it was sent by the server or by a client.
inline int eventType(const xcb_generic_event_t &event)
{
    return event.response_type & 0x7f;
}

template<typename Event>
const Event &eventAs(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const Event &>(event);
}

// Server time stamps and sequence numbers wrap around: whether `a` is later.
inline bool isLater(uint32_t a, uint32_t b)
{
    return static_cast<int32_t>(a - b) > 0;
}

} // namespace nivora::linuxdesktop
