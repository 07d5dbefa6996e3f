#include "x11_window_system.h"

#include "x11_shadow.h"
#include "x11_struts.h"
#include "x11_window_ping.h"

#include <QCoreApplication>

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
    : X11EventHandler(connection)
{
}

X11WindowSystem::Focus X11WindowSystem::focus() const
{
    if (!connection().isValid())
        return {};
    xcb_connection_t *c = connection().xcb();
    const xcb_window_t root = connection().root();
    const auto activeCookie =
        askFor(c, root, connection().atom(X11Atom::NetActiveWindow), XCB_ATOM_WINDOW, 1);
    const auto checkCookie =
        askFor(c, root, connection().atom(X11Atom::NetSupportingWmCheck), XCB_ATOM_WINDOW, 1);
    const auto focusCookie = xcb_get_input_focus(c);
    const auto active = connection().reply<xcb_get_property_reply>(activeCookie);
    const auto check = connection().reply<xcb_get_property_reply>(checkCookie);
    const auto focused = connection().reply<xcb_get_input_focus_reply>(focusCookie);

    Focus result;
    // With the focus on the root, the keys go to the window under the pointer too.
    const bool byPointer =
        focused && (focused->focus == XCB_INPUT_FOCUS_POINTER_ROOT || focused->focus == root);
    if (byPointer)
        result.focus = windowUnderPointer();
    else if (focused)
        result.focus = focused->focus;
    const xcb_window_t manager = firstWord(check.get());
    result.managed = isManaged(manager);
    if (!result.managed) {
        result.lost = byPointer || result.focus == XCB_NONE;
        // A window manager that crashed leaves the focus on nothing. The user still
        // works where the pointer is, and a paste there can move the focus.
        result.active = topLevelOf(result.focus != XCB_NONE ? result.focus : windowUnderPointer());
        return result;
    }
    result.active = firstWord(active.get());
    if (isWithin(result.focus, result.active))
        return result;
    // The window manager knows nothing of a launcher that took the keys by
    // itself. Its own windows have the keys for moments, or while no window is
    // active; they are no program's.
    const xcb_window_t other = topLevelOf(result.focus);
    if (!isOfSameClient(other, manager) && isOverride(other) && isProgram(other))
        result.active = other;
    return result;
}

bool X11WindowSystem::isManaged(xcb_window_t check) const
{
    if (check == XCB_NONE)
        return false;
    // The properties on the root outlive a window manager that crashed; this
    // window of its own, which names itself, does not.
    const auto itself = connection().reply<xcb_get_property_reply>(
        askFor(connection().xcb(), check, connection().atom(X11Atom::NetSupportingWmCheck),
               XCB_ATOM_WINDOW, 1));
    return firstWord(itself.get()) == check;
}

bool X11WindowSystem::isOfSameClient(xcb_window_t a, xcb_window_t b) const
{
    const uint32_t clientPart = ~xcb_get_setup(connection().xcb())->resource_id_mask;
    return (a & clientPart) == (b & clientPart);
}

bool X11WindowSystem::isOwn(xcb_window_t window) const
{
    return connection().processOf(window) == QCoreApplication::applicationPid();
}

bool X11WindowSystem::isOverride(xcb_window_t window) const
{
    if (window == XCB_NONE)
        return false;
    const auto attributes = connection().reply<xcb_get_window_attributes_reply>(
        xcb_get_window_attributes(connection().xcb(), window));
    return attributes && attributes->override_redirect;
}

bool X11WindowSystem::isProgram(xcb_window_t window) const
{
    const auto classes = connection().reply<xcb_get_property_reply>(
        askFor(connection().xcb(), window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 1));
    // The window that takes the keys for openbox while no window is active has an
    // empty class.
    return classes && classes->format == 8 && xcb_get_property_value_length(classes.get()) > 0;
}

xcb_window_t X11WindowSystem::windowUnderPointer() const
{
    xcb_window_t window = connection().root();
    for (int i = 0; i < deepestNesting; ++i) {
        const auto pointer = connection().reply<xcb_query_pointer_reply>(
            xcb_query_pointer(connection().xcb(), window));
        if (!pointer || pointer->child == XCB_NONE)
            break;
        window = pointer->child;
    }
    return window == connection().root() ? XCB_NONE : window;
}

xcb_window_t X11WindowSystem::topLevelOf(xcb_window_t window) const
{
    // The outermost that names its program: older window managers put frames
    // around it, which do not. Where none does, the outermost.
    xcb_window_t found = XCB_NONE;
    for (int i = 0; i < deepestNesting && window != XCB_NONE; ++i) {
        const auto tree =
            connection().reply<xcb_query_tree_reply>(xcb_query_tree(connection().xcb(), window));
        if (!tree)
            return XCB_NONE;
        if (isProgram(window))
            found = window;
        if (tree->parent == connection().root())
            return found != XCB_NONE ? found : window;
        window = tree->parent;
    }
    return XCB_NONE;
}

bool X11WindowSystem::isWithin(xcb_window_t window, xcb_window_t ancestor) const
{
    for (int i = 0; i < deepestNesting && window != XCB_NONE; ++i) {
        if (window == ancestor)
            return true;
        const auto tree =
            connection().reply<xcb_query_tree_reply>(xcb_query_tree(connection().xcb(), window));
        if (!tree)
            return false;
        window = tree->parent;
    }
    return false;
}

std::optional<platform::ForeignWindow> X11WindowSystem::activeWindow() const
{
    const Focus now = focus();
    const xcb_window_t window = now.active;
    if (window == XCB_NONE)
        return std::nullopt;
    m_lastSeen = now;
    xcb_connection_t *c = connection().xcb();
    const auto classCookie = askFor(c, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 256);
    const auto pidCookie =
        askFor(c, window, connection().atom(X11Atom::NetWmPid), XCB_ATOM_CARDINAL, 1);
    const qint64 process = connection().processOf(window);
    const auto classes = connection().reply<xcb_get_property_reply>(classCookie);
    const auto pid = connection().reply<xcb_get_property_reply>(pidCookie);
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
    if (!connection().isValid() || window == XCB_NONE)
        return;
    const Focus now = focus();
    if (!now.managed) {
        if (now.active != window && isOwn(window))
            receive(window, now);
        moveFocus(window == m_lastSeen.active && isWithin(m_lastSeen.focus, window)
                      ? m_lastSeen.focus
                      : window);
        return;
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection().atom(X11Atom::NetActiveWindow);
    // From a tool that acts for the user: window managers hold a program's own
    // request back when the user has just typed elsewhere.
    constexpr uint32_t fromPager = 2;
    message.data.data32[0] = fromPager;
    message.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection().xcb(), 0, connection().root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    connection().flush();
}

platform::Task X11WindowSystem::isResponding(platform::WindowId window,
                                             std::chrono::milliseconds deadline,
                                             std::function<void(bool)> done) const
{
    return platform::Task(new X11WindowPing(connection(), window, deadline, std::move(done)));
}

void X11WindowSystem::receive(xcb_window_t visitor, const Focus &before)
{
    // From one of our windows to the next, the focus still came from elsewhere.
    if (m_visitor == XCB_NONE || !isOwn(before.active))
        m_before = before;
    m_visitor = visitor;
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection().xcb(), visitor, XCB_CW_EVENT_MASK, &mask);
}

void X11WindowSystem::handleEvent(const xcb_generic_event_t &event)
{
    if (m_visitor == XCB_NONE || eventType(event) != XCB_UNMAP_NOTIFY ||
        eventAs<xcb_unmap_notify_event_t>(event).window != m_visitor)
        return;
    const uint32_t mask = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection().xcb(), m_visitor, XCB_CW_EVENT_MASK, &mask);
    m_visitor = XCB_NONE;
    // Whoever has taken the focus meanwhile keeps it.
    const auto focused =
        connection().reply<xcb_get_input_focus_reply>(xcb_get_input_focus(connection().xcb()));
    if (focused &&
        (focused->focus <= XCB_INPUT_FOCUS_POINTER_ROOT || focused->focus == connection().root()))
        moveFocus(m_before.focus);
}

void X11WindowSystem::moveFocus(xcb_window_t window)
{
    if (window == XCB_NONE)
        return;
    // A window that is not shown refuses it, which changes nothing.
    xcb_set_input_focus(connection().xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    connection().flush();
}

bool X11WindowSystem::isCompositing() const
{
    if (!connection().isValid())
        return false;
    // A compositor owns this selection while it runs.
    const auto owner = connection().reply<xcb_get_selection_owner_reply>(
        xcb_get_selection_owner(connection().xcb(), connection().atom(X11Atom::NetWmCmS0)));
    return owner && owner->owner != XCB_NONE;
}

QRect X11WindowSystem::workArea(const QRect &screen) const
{
    return withoutStruts(connection(), screen);
}

void X11WindowSystem::setShadow(platform::WindowId window, const QSize &size, int margin)
{
    setX11Shadow(connection(), window, size, margin);
}

} // namespace nivora::linuxdesktop
