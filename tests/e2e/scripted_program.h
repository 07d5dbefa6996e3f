#pragma once

#include "support/desktop_session.h"
#include "support/x11_driver.h"
#include "support/x11_peer.h"

#include <QObject>

#include <functional>
#include <memory>

namespace nivora::test {

// A program with one window that tells assistive tools nothing and does with its
// copy and paste keys just what a test says. It answers while this thread serves
// its events.
class ScriptedProgram
{
public:
    explicit ScriptedProgram(DesktopSession &session);

    // Shows the window and gives it the keyboard, with or without the help of a
    // window manager.
    bool open(const X11Driver &user, std::chrono::milliseconds bound);
    xcb_window_t window() const { return m_window; }
    // As if it had been killed: all that it has in the X server ends.
    void die();
    void destroyWindow();

    // Puts this on the clipboard, as its copy keys do.
    void copy(const QByteArray &text);
    // Fetches the clipboard, as its paste keys do; `pasted` is then filled.
    void paste(const QByteArray &format = "UTF8_STRING");

    std::function<void()> onCopy;  // Control+Insert
    std::function<void()> onPaste; // Control+V
    int copies = 0;
    int pastes = 0;
    QByteArray pasted;

private:
    void handle(const xcb_generic_event_t &event);
    void handleKey(const xcb_key_press_event_t &press);
    void answer(const xcb_selection_request_event_t &request);

    std::unique_ptr<X11Peer> m_peer;
    xcb_window_t m_window = XCB_NONE;
    QByteArray m_copied;
    bool m_dead = false;
    QObject m_death; // ends the timer of a death with this object
};

} // namespace nivora::test
