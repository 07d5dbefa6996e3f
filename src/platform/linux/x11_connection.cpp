#include "x11_connection.h"

#include "platform/log.h"

#include <xcb/res.h>
#include <xcb/xcbext.h>

#include <QDeadlineTimer>

#include <poll.h>

namespace nivora::linuxdesktop {

X11Connection::X11Connection(const QByteArray &displayName)
    : m_displayName(displayName)
    , m_atoms(x11AtomNames.size())
{
    int screenNumber = 0;
    m_connection =
        xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), &screenNumber);
    if (xcb_connection_has_error(m_connection)) {
        qCWarning(log::app) << "no connection to the X server";
        return;
    }
    m_valid = true;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (; screen.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screen);
    m_root = screen.data->root;

    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection),
                                                   QSocketNotifier::Read, this);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11Connection::dispatch);

    m_clockWindow = createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
    QByteArrayList names;
    for (const char *name : x11AtomNames)
        names.append(QByteArray::fromRawData(name, qstrlen(name)));
    m_atoms = intern(names);
}

X11Connection::~X11Connection()
{
    // The notifier watches the descriptor that is about to close.
    m_notifier.reset();
    xcb_disconnect(m_connection);
}

void X11Connection::flush()
{
    if (!m_valid)
        return;
    xcb_flush(m_connection);
    // A write that had to wait has read events meanwhile, for which the
    // notifier will not call.
    while (xcb_generic_event_t *event = xcb_poll_for_queued_event(m_connection))
        m_events.emplace_back(event);
    scheduleDispatch();
}

bool X11Connection::synchronise()
{
    return m_valid && reply<xcb_get_input_focus_reply>(xcb_get_input_focus(m_connection));
}

xcb_timestamp_t X11Connection::serverTime()
{
    if (!m_valid)
        return XCB_CURRENT_TIME;
    // Appending nothing to a property changes nothing, but is announced with the
    // time.
    const xcb_atom_t property = atom(X11Atom::Timestamp);
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_clockWindow, property,
                        XCB_ATOM_INTEGER, 32, 0, nullptr);
    if (!synchronise())
        return XCB_CURRENT_TIME;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    std::erase_if(m_events, [&](const X11Ptr<xcb_generic_event_t> &event) {
        if (eventType(*event) != XCB_PROPERTY_NOTIFY)
            return false;
        const auto &notify = eventAs<xcb_property_notify_event_t>(*event);
        if (notify.window != m_clockWindow)
            return false;
        time = notify.time;
        return true;
    });
    return time;
}

std::vector<xcb_atom_t> X11Connection::intern(const QByteArrayList &names)
{
    std::vector<xcb_intern_atom_cookie_t> cookies;
    std::vector<xcb_atom_t> atoms(names.size(), XCB_NONE);
    if (!m_valid)
        return atoms;
    cookies.reserve(names.size());
    for (const QByteArray &name : names)
        cookies.push_back(xcb_intern_atom(m_connection, 0, name.size(), name.constData()));
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        if (const auto interned = reply<xcb_intern_atom_reply>(cookies[i]))
            atoms[i] = interned->atom;
    }
    return atoms;
}

QByteArrayList X11Connection::atomNames(const std::vector<xcb_atom_t> &atoms)
{
    std::vector<xcb_get_atom_name_cookie_t> cookies;
    QByteArrayList names(atoms.size());
    if (!m_valid)
        return names;
    cookies.reserve(atoms.size());
    for (const xcb_atom_t atom : atoms)
        cookies.push_back(xcb_get_atom_name(m_connection, atom));
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        if (const auto named = reply<xcb_get_atom_name_reply>(cookies[i]))
            names[i] = QByteArray(xcb_get_atom_name_name(named.get()),
                                  xcb_get_atom_name_name_length(named.get()));
    }
    return names;
}

xcb_window_t X11Connection::createHiddenWindow(uint32_t eventMask)
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &eventMask);
    return window;
}

qint64 X11Connection::processOf(xcb_window_t window)
{
    if (!hasExtension(xcb_res_id))
        return 0;
    const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto ids =
        reply<xcb_res_query_client_ids_reply>(xcb_res_query_client_ids(m_connection, 1, &spec));
    if (!ids)
        return 0;
    for (auto it = xcb_res_query_client_ids_ids_iterator(ids.get()); it.rem > 0;
         xcb_res_client_id_value_next(&it)) {
        if ((it.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) &&
            xcb_res_client_id_value_value_length(it.data) > 0)
            return *xcb_res_client_id_value_value(it.data);
    }
    return 0;
}

bool X11Connection::hasExtension(xcb_extension_t &extension) const
{
    if (!m_valid)
        return false;
    // Null once the connection is broken.
    const auto *data = xcb_get_extension_data(m_connection, &extension);
    return data && data->present;
}

void *X11Connection::waitForReply(unsigned int sequence)
{
    if (!m_valid)
        return nullptr;
    xcb_flush(m_connection);
    const QDeadlineTimer limit(waitLimit);
    void *answer = nullptr;
    xcb_generic_error_t *error = nullptr;
    // xcb only looks at the socket when it is asked for events.
    while (!xcb_poll_for_reply(m_connection, sequence, &answer, &error)) {
        takeEvents();
        if (xcb_poll_for_reply(m_connection, sequence, &answer, &error))
            break;
        pollfd socket{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        if (limit.hasExpired()) {
            xcb_discard_reply(m_connection, sequence);
            break;
        }
        ::poll(&socket, 1, static_cast<int>(limit.remainingTime()));
    }
    std::free(error);
    takeEvents();
    scheduleDispatch();
    checkError();
    return answer;
}

void X11Connection::takeEvents()
{
    while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection))
        m_events.emplace_back(event);
}

void X11Connection::scheduleDispatch()
{
    if (m_events.empty() || m_dispatchScheduled)
        return;
    m_dispatchScheduled = true;
    QMetaObject::invokeMethod(this, &X11Connection::dispatch, Qt::QueuedConnection);
}

void X11Connection::dispatch()
{
    m_dispatchScheduled = false;
    takeEvents();
    while (!m_events.empty()) {
        const auto event = std::move(m_events.front());
        m_events.pop_front();
        // Type 0 is the error of a request whose outcome nobody waited for: a
        // window that vanished, as windows do.
        if (event->response_type == 0)
            continue;
        for (std::size_t i = 0; i < m_handlers.size(); ++i) {
            if (m_handlers[i])
                m_handlers[i]->handleEvent(*event);
        }
        std::erase(m_handlers, nullptr);
    }
    flush();
    checkError();
}

void X11Connection::checkError()
{
    if (!m_valid || !xcb_connection_has_error(m_connection))
        return;
    m_valid = false;
    m_notifier->setEnabled(false);
    qCWarning(log::app) << "the connection to the X server broke";
}

X11EventHandler::X11EventHandler(X11Connection &connection)
    : m_connection(connection)
{
    m_connection.m_handlers.push_back(this);
}

X11EventHandler::~X11EventHandler()
{
    std::replace(m_connection.m_handlers.begin(), m_connection.m_handlers.end(), this,
                 static_cast<X11EventHandler *>(nullptr));
}

} // namespace nivora::linuxdesktop
