#pragma once

#include "platform/task.h"
#include "x11_connection.h"

#include <QTimer>

#include <functional>

namespace nivora::linuxdesktop {

// Asks the program of a window whether it handles its events (_NET_WM_PING), as
// window managers do before they call a program hung.
class X11WindowPing final : public platform::Operation, private X11EventHandler
{
public:
    // A program that does not take this question counts as one that answers.
    X11WindowPing(X11Connection &connection, xcb_window_t window,
                  std::chrono::milliseconds deadline, std::function<void(bool)> done);

private:
    ~X11WindowPing() override = default;

    void handleEvent(const xcb_generic_event_t &event) override;
    void stop() override;
    bool isTaken();
    void ask();
    void watchAnswers(bool watch);

    xcb_window_t m_window;
    xcb_timestamp_t m_mark = XCB_CURRENT_TIME; // tells our question from others'
    bool m_watching = false;
    QTimer m_deadline;
    std::function<void(bool)> m_done;
};

} // namespace nivora::linuxdesktop
