#pragma once

#include "x11_connection.h"

#include <QTimer>

#include <functional>

namespace nivora::linuxdesktop {

// Asks the session's clipboard manager to take over what a window of ours offers
// on the clipboard, so that it outlives this program. The offer must be served
// meanwhile.
// https://www.freedesktop.org/wiki/ClipboardManager/
class X11HandOver final : public QObject, private X11EventHandler
{
public:
    // `done` is called once, never from within the constructor: when the manager
    // has everything, refuses or does not answer in time, or where there is none.
    // It may destroy this object.
    X11HandOver(X11Connection &connection, xcb_window_t owner,
                const std::vector<xcb_atom_t> &targets, std::chrono::milliseconds deadline,
                std::function<void()> done);

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    void end();

    xcb_window_t m_owner;
    QTimer m_deadline;
    std::function<void()> m_done;
};

} // namespace nivora::linuxdesktop
