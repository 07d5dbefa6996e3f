#include "x11_transfer.h"

namespace nivora::linuxdesktop {

namespace {

// An owner that sends more than this is not believed: no one copies it on purpose,
// and it would have to be kept in memory.
constexpr qsizetype largest = 256 * 1024 * 1024;

} // namespace

X11Transfer::X11Transfer(X11Connection &connection, X11Requestors &requestors, xcb_atom_t selection,
                         xcb_atom_t target, xcb_timestamp_t time,
                         std::function<void(std::optional<Data>)> done)
    : X11EventHandler(connection)
    , m_requestors(requestors)
    , m_selection(selection)
    , m_target(target)
    , m_window(requestors.create())
    , m_done(std::move(done))
{
    xcb_convert_selection(connection.xcb(), m_window, selection, target,
                          connection.atom(X11Atom::Transfer), time);
    connection.flush();
}

X11Transfer::~X11Transfer()
{
    m_requestors.retire(m_window, m_finished);
}

void X11Transfer::handleEvent(const xcb_generic_event_t &event)
{
    if (m_finished)
        return;
    if (eventType(event) == XCB_SELECTION_NOTIFY) {
        const auto &notify = eventAs<xcb_selection_notify_event_t>(event);
        if (notify.requestor == m_window && !m_inPieces)
            answered(notify);
    } else if (eventType(event) == XCB_PROPERTY_NOTIFY && m_inPieces) {
        const auto &notify = eventAs<xcb_property_notify_event_t>(event);
        if (notify.window == m_window && notify.state == XCB_PROPERTY_NEW_VALUE &&
            notify.atom == connection().atom(X11Atom::Transfer))
            pieceArrived();
    }
}

void X11Transfer::answered(const xcb_selection_notify_event_t &notify)
{
    if (notify.property != connection().atom(X11Atom::Transfer) ||
        notify.selection != m_selection || notify.target != m_target) {
        finish(std::nullopt);
        return;
    }
    const auto property = takeProperty();
    if (!property || property->type == XCB_NONE) {
        finish(std::nullopt);
        return;
    }
    if (property->type == connection().atom(X11Atom::Incr)) {
        // Taking the property has told the owner to go on.
        m_inPieces = true;
        return;
    }
    m_data.type = property->type;
    m_data.unit = property->format;
    m_data.bytes = QByteArray(static_cast<const char *>(xcb_get_property_value(property.get())),
                              xcb_get_property_value_length(property.get()));
    finish(std::move(m_data));
}

void X11Transfer::pieceArrived()
{
    const auto property = takeProperty();
    if (!property) {
        finish(std::nullopt);
        return;
    }
    // The property of the first answer announces itself here too, as a piece
    // that has been taken already.
    if (property->type == XCB_NONE)
        return;
    if (m_data.type == XCB_NONE) {
        m_data.type = property->type;
        m_data.unit = property->format;
    }
    const int length = xcb_get_property_value_length(property.get());
    if (length == 0) {
        finish(std::move(m_data));
        return;
    }
    m_data.bytes.append(static_cast<const char *>(xcb_get_property_value(property.get())), length);
    if (m_data.bytes.size() > largest)
        finish(std::nullopt);
}

X11Ptr<xcb_get_property_reply_t> X11Transfer::takeProperty()
{
    // As many words as a reply may hold: more than the server keeps in one.
    constexpr uint32_t everything = largest / 4;
    return connection().reply<xcb_get_property_reply>(
        xcb_get_property(connection().xcb(), 1, m_window, connection().atom(X11Atom::Transfer),
                         XCB_GET_PROPERTY_TYPE_ANY, 0, everything));
}

void X11Transfer::finish(std::optional<Data> data)
{
    m_finished = true;
    // The call may destroy this object.
    const auto done = std::move(m_done);
    done(std::move(data));
}

} // namespace nivora::linuxdesktop
