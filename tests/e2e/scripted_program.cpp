#include "scripted_program.h"

#include "support/wait.h"

#include <QTimer>

#include <X11/keysym.h>

namespace nivora::test {

ScriptedProgram::ScriptedProgram(DesktopSession &session)
    : m_peer(std::make_unique<X11Peer>(session.displayName()))
{
    m_peer->onEvent = [this](const xcb_generic_event_t &event) { handle(event); };
}

bool ScriptedProgram::open(const X11Driver &user, std::chrono::milliseconds bound)
{
    m_window = m_peer->createWindow(XCB_EVENT_MASK_KEY_PRESS);
    m_peer->setProperty(m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                        QByteArray("scripted\0Scripted\0", 18));
    xcb_map_window(m_peer->xcb(), m_window);
    m_peer->synchronise();
    const auto isShown = [&](const auto &each) { return each.id == m_window; };
    if (!user.waitForMapped(isShown, bound))
        return false;
    return waitUntil(
        [&] {
            xcb_set_input_focus(m_peer->xcb(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
            m_peer->synchronise();
            const auto focus = X11Peer::hold(xcb_get_input_focus_reply(
                m_peer->xcb(), xcb_get_input_focus(m_peer->xcb()), nullptr));
            return focus && focus->focus == m_window;
        },
        bound);
}

void ScriptedProgram::die()
{
    m_dead = true;
    // It may be one of its own events that it dies of.
    QTimer::singleShot(0, &m_death, [this] { m_peer.reset(); });
}

void ScriptedProgram::destroyWindow()
{
    xcb_destroy_window(m_peer->xcb(), m_window);
    m_peer->synchronise();
}

void ScriptedProgram::copy(const QByteArray &text)
{
    m_copied = text;
    m_peer->own(m_peer->atom("CLIPBOARD"), m_window);
}

void ScriptedProgram::paste(const QByteArray &format)
{
    xcb_convert_selection(m_peer->xcb(), m_window, m_peer->atom("CLIPBOARD"), m_peer->atom(format),
                          m_peer->atom("PASTED"), XCB_CURRENT_TIME);
    m_peer->synchronise();
}

void ScriptedProgram::handle(const xcb_generic_event_t &event)
{
    if (m_dead)
        return;
    switch (event.response_type & 0x7f) {
    case XCB_KEY_PRESS:
        handleKey(reinterpret_cast<const xcb_key_press_event_t &>(event));
        break;
    case XCB_SELECTION_REQUEST:
        answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        break;
    case XCB_SELECTION_NOTIFY: {
        const auto &notify = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
        if (notify.property != XCB_NONE)
            pasted = m_peer->property(m_window, notify.property);
        break;
    }
    default:
        break;
    }
}

void ScriptedProgram::handleKey(const xcb_key_press_event_t &press)
{
    const auto map = X11Peer::hold(xcb_get_keyboard_mapping_reply(
        m_peer->xcb(), xcb_get_keyboard_mapping(m_peer->xcb(), press.detail, 1), nullptr));
    if (!map || (press.state & XCB_MOD_MASK_CONTROL) == 0)
        return;
    const auto symbol = *xcb_get_keyboard_mapping_keysyms(map.get());
    if (symbol == XK_Insert) {
        ++copies;
        if (onCopy)
            onCopy();
    } else if (symbol == XK_v) {
        ++pastes;
        if (onPaste)
            onPaste();
    }
}

void ScriptedProgram::answer(const xcb_selection_request_event_t &request)
{
    const auto utf8 = m_peer->atom("UTF8_STRING");
    if (request.target == m_peer->atom("TARGETS"))
        m_peer->answer(request, {request.target, utf8});
    else if (request.target == utf8)
        m_peer->answer(request, utf8, m_copied);
    else
        m_peer->notify(request, XCB_NONE);
}

} // namespace nivora::test
