#pragma once

#include "platform/window_system.h"
#include "x11_connection.h"

namespace nivora::linuxdesktop {

// Asks the window manager for the active window (_NET_ACTIVE_WINDOW); without
// one, the window that the keys go to counts. A window that vanishes between two
// questions counts as absent. Each call waits for at most a few answers, none
// longer than X11Connection::waitLimit.
class X11WindowSystem final : public platform::WindowSystem
{
public:
    explicit X11WindowSystem(X11Connection &connection);

    std::optional<platform::ForeignWindow> activeWindow() const override;
    bool hasInputFocus(platform::WindowId window) const override;
    void requestActivation(platform::WindowId window) override;
    platform::Task isResponding(platform::WindowId window, std::chrono::milliseconds deadline,
                                std::function<void(bool)> done) const override;
    bool isCompositing() const override;

private:
    // Where the keys go, and which top-level window is active.
    struct Focus
    {
        xcb_window_t focus = XCB_NONE;
        xcb_window_t active = XCB_NONE;
    };
    Focus focus() const;
    bool isManaged(xcb_window_t check) const;
    xcb_window_t windowUnderPointer() const;
    bool isWithin(xcb_window_t window, xcb_window_t ancestor) const;

    X11Connection &m_connection;
};

} // namespace nivora::linuxdesktop
