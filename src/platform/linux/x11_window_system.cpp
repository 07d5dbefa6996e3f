#include "x11_window_system.h"

#include "x11_window_ping.h"

namespace nivora::linuxdesktop {

namespace {

// Deeper than any program nests its windows; a bound for a tree that changes
// while it is walked.
constexpr int deepestNesting = 32;

xcb_get_property_cookie_t askFor(xcb_connection_t *c, xcb_window_t window, xcb_atom_t property,
                                 xcb_atom_t type, uint32_t words)
{
    return xcb_get_property(c, 0, window, property, type, 0, words);
}

uint32_t firstWord(const xcb_get_property_reply_t *reply)
{
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply) < 4)
        return 0;
    return *static_cast<const uint32_t *>(xcb_get_property_value(reply));
}

} // namespace

X11WindowSystem::X11WindowSystem(X11Connection &connection)
    : m_connection(connection)
{
}

X11WindowSystem::Focus X11WindowSystem::focus() const
{
    if (!m_connection.isValid())
        return {};
    xcb_connection_t *c = m_connection.xcb();
    const xcb_window_t root = m_connection.root();
    const auto activeCookie =
        askFor(c, root, m_connection.atom(X11Atom::NetActiveWindow), XCB_ATOM_WINDOW, 1);
    const auto checkCookie =
        askFor(c, root, m_connection.atom(X11Atom::NetSupportingWmCheck), XCB_ATOM_WINDOW, 1);
    const auto focusCookie = xcb_get_input_focus(c);
    const auto active = m_connection.reply<xcb_get_property_reply>(activeCookie);
    const auto check = m_connection.reply<xcb_get_property_reply>(checkCookie);
    const auto focused = m_connection.reply<xcb_get_input_focus_reply>(focusCookie);

    Focus result;
    if (focused && focused->focus == XCB_INPUT_FOCUS_POINTER_ROOT)
        result.focus = windowUnderPointer();
    else if (focused && focused->focus != root)
        result.focus = focused->focus;
    if (isManaged(firstWord(check.get()))) {
        result.active = firstWord(active.get());
        return result;
    }
    xcb_window_t window = result.focus;
    for (int i = 0; i < deepestNesting && window != XCB_NONE; ++i) {
        const auto tree = m_connection.reply<xcb_query_tree_reply>(xcb_query_tree(c, window));
        if (!tree)
            break;
        if (tree->parent == root) {
            result.active = window;
            break;
        }
        window = tree->parent;
    }
    return result;
}

bool X11WindowSystem::isManaged(xcb_window_t check) const
{
    if (check == XCB_NONE)
        return false;
    // The properties on the root outlive a window manager that crashed; this
    // window of its own, which names itself, does not.
    const auto itself = m_connection.reply<xcb_get_property_reply>(
        askFor(m_connection.xcb(), check, m_connection.atom(X11Atom::NetSupportingWmCheck),
               XCB_ATOM_WINDOW, 1));
    return firstWord(itself.get()) == check;
}

xcb_window_t X11WindowSystem::windowUnderPointer() const
{
    const auto pointer = m_connection.reply<xcb_query_pointer_reply>(
        xcb_query_pointer(m_connection.xcb(), m_connection.root()));
    return pointer ? pointer->child : XCB_NONE;
}

bool X11WindowSystem::isWithin(xcb_window_t window, xcb_window_t ancestor) const
{
    for (int i = 0; i < deepestNesting && window != XCB_NONE; ++i) {
        if (window == ancestor)
            return true;
        const auto tree =
            m_connection.reply<xcb_query_tree_reply>(xcb_query_tree(m_connection.xcb(), window));
        if (!tree)
            return false;
        window = tree->parent;
    }
    return false;
}

std::optional<platform::ForeignWindow> X11WindowSystem::activeWindow() const
{
    const xcb_window_t window = focus().active;
    if (window == XCB_NONE)
        return std::nullopt;
    xcb_connection_t *c = m_connection.xcb();
    const auto classCookie = askFor(c, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 256);
    const auto pidCookie =
        askFor(c, window, m_connection.atom(X11Atom::NetWmPid), XCB_ATOM_CARDINAL, 1);
    const qint64 process = m_connection.processOf(window);
    const auto classes = m_connection.reply<xcb_get_property_reply>(classCookie);
    const auto pid = m_connection.reply<xcb_get_property_reply>(pidCookie);
    if (!classes)
        return std::nullopt; // gone meanwhile

    platform::ForeignWindow found;
    found.id = window;
    // The server knows who is at the other end; the property is what the program
    // says of itself, and that may come from another machine or container.
    found.processId = process != 0 ? process : firstWord(pid.get());
    if (classes->format == 8) {
        const QByteArray value(static_cast<const char *>(xcb_get_property_value(classes.get())),
                               xcb_get_property_value_length(classes.get()));
        const auto parts = value.split('\0'); // instance, class
        found.instanceName = QString::fromLatin1(parts.value(0));
        found.className = QString::fromLatin1(parts.value(1));
    }
    return found;
}

bool X11WindowSystem::hasInputFocus(platform::WindowId window) const
{
    if (window == XCB_NONE)
        return false;
    const Focus now = focus();
    return now.active == window && isWithin(now.focus, window);
}

void X11WindowSystem::requestActivation(platform::WindowId window)
{
    if (!m_connection.isValid() || window == XCB_NONE)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_connection.atom(X11Atom::NetActiveWindow);
    // From a tool that acts for the user: window managers hold a program's own
    // request back when the user has just typed elsewhere.
    constexpr uint32_t fromPager = 2;
    message.data.data32[0] = fromPager;
    message.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(m_connection.xcb(), 0, m_connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    m_connection.flush();
}

platform::Task X11WindowSystem::isResponding(platform::WindowId window,
                                             std::chrono::milliseconds deadline,
                                             std::function<void(bool)> done) const
{
    return platform::Task(new X11WindowPing(m_connection, window, deadline, std::move(done)));
}

bool X11WindowSystem::isCompositing() const
{
    if (!m_connection.isValid())
        return false;
    // A compositor owns this selection while it runs.
    const auto owner = m_connection.reply<xcb_get_selection_owner_reply>(
        xcb_get_selection_owner(m_connection.xcb(), m_connection.atom(X11Atom::NetWmCmS0)));
    return owner && owner->owner != XCB_NONE;
}

} // namespace nivora::linuxdesktop
