#include "x11_incr_sender.h"

namespace nivora::linuxdesktop {

namespace {

using namespace std::chrono_literals;

// How long a program may take to ask for the next piece.
constexpr auto patience = 10s;
constexpr qsizetype usualPiece = 256 * 1024;

} // namespace

qsizetype X11IncrSender::pieceSize(X11Connection &connection)
{
    // A request's length counts in words; its head is shorter than this.
    constexpr qsizetype head = 64;
    const qsizetype most = qsizetype(xcb_get_maximum_request_length(connection.xcb())) * 4 - head;
    return std::min(usualPiece, most);
}

X11IncrSender::X11IncrSender(X11Connection &connection, xcb_window_t requestor, xcb_atom_t property,
                             xcb_atom_t type, int unit, QByteArray bytes,
                             std::function<void(const X11IncrSender *, bool)> ended)
    : X11EventHandler(connection)
    , m_requestor(requestor)
    , m_property(property)
    , m_type(type)
    , m_unit(unit)
    , m_bytes(std::move(bytes))
    , m_ended(std::move(ended))
{
    // Listening comes first: the other program may take the announcement at once.
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.xcb(), requestor, XCB_CW_EVENT_MASK, &mask);
    const auto size = static_cast<uint32_t>(m_bytes.size());
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, requestor, property,
                        connection.atom(X11Atom::Incr), 32, 1, &size);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] { end(false); });
    m_patience.start();
}

void X11IncrSender::handleEvent(const xcb_generic_event_t &event)
{
    if (!m_ended)
        return;
    if (eventType(event) == XCB_DESTROY_NOTIFY) {
        if (eventAs<xcb_destroy_notify_event_t>(event).window == m_requestor)
            end(false);
    } else if (eventType(event) == XCB_PROPERTY_NOTIFY) {
        const auto &notify = eventAs<xcb_property_notify_event_t>(event);
        if (notify.window == m_requestor && notify.atom == m_property &&
            notify.state == XCB_PROPERTY_DELETE)
            sendPiece();
    }
}

void X11IncrSender::sendPiece()
{
    if (m_closed) {
        end(true);
        return;
    }
    const qsizetype length = std::min(pieceSize(connection()), m_bytes.size() - m_sent);
    xcb_change_property(connection().xcb(), XCB_PROP_MODE_REPLACE, m_requestor, m_property, m_type,
                        static_cast<uint8_t>(m_unit), static_cast<uint32_t>(length * 8 / m_unit),
                        m_bytes.constData() + m_sent);
    connection().flush();
    m_sent += length;
    m_closed = length == 0;
    m_patience.start();
}

void X11IncrSender::end(bool complete)
{
    m_patience.stop();
    // The call may destroy this object.
    const auto ended = std::exchange(m_ended, {});
    ended(this, complete);
}

} // namespace nivora::linuxdesktop
