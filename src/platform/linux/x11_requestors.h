#pragma once

#include "x11_connection.h"

#include <QObject>

#include <deque>

namespace nivora::linuxdesktop {

// Windows that other programs deliver selections to, each for one transfer, so
// that a late answer can never be taken for another transfer's.
class X11Requestors final : public QObject, private X11EventHandler
{
public:
    explicit X11Requestors(X11Connection &connection);
    ~X11Requestors() override;

    xcb_window_t create();

    // Ends the use of a window. One whose owner may still answer is kept a while,
    // and what arrives there is thrown away: many programs do not survive writing
    // to a window that has gone, and the user's clipboard would go with them.
    void retire(xcb_window_t window, bool answered);

private:
    void handleEvent(const xcb_generic_event_t &event) override;
    void destroy(xcb_window_t window);

    std::deque<xcb_window_t> m_abandoned; // oldest first
};

} // namespace nivora::linuxdesktop
