#pragma once

#include "platform/window_system.h"
#include "x11_connection.h"

namespace nivora::linuxdesktop {

// Asks the window manager for the active window (_NET_ACTIVE_WINDOW). Without
// one, or while a window that it does not manage has the keys, the window that
// the keys go to counts. A window that vanishes between two questions counts as
// absent. Each call waits for at most a few answers, none longer than
// X11Connection::waitLimit.
//
// Without a window manager nobody else moves the input focus. Activation then
// moves it from here, and a window of this program that goes away gives it back
// to where it was.
class X11WindowSystem final : public platform::WindowSystem, private X11EventHandler
{
public:
    explicit X11WindowSystem(X11Connection &connection);

    std::optional<platform::ForeignWindow> activeWindow() const override;
    bool hasInputFocus(platform::WindowId window) const override;
    bool isKeyboardLost() const override { return focus().lost; }
    void requestActivation(platform::WindowId window) override;
    platform::Task isResponding(platform::WindowId window, std::chrono::milliseconds deadline,
                                std::function<void(bool)> done) const override;
    bool isCompositing() const override;
    QRect workArea(const QRect &screen) const override;
    void setShadow(platform::WindowId window, const QSize &size, int margin) override;

private:
    // Where the keys go, and which top-level window is active.
    struct Focus
    {
        xcb_window_t focus = XCB_NONE;
        xcb_window_t active = XCB_NONE;
        bool managed = false;
        bool lost = false; // no window holds the focus, and nobody will pass it on
    };

    void handleEvent(const xcb_generic_event_t &event) override;
    Focus focus() const;
    bool isManaged(xcb_window_t check) const;
    bool isOfSameClient(xcb_window_t a, xcb_window_t b) const;
    bool isOwn(xcb_window_t window) const;
    bool isOverride(xcb_window_t window) const;
    bool isProgram(xcb_window_t window) const;
    xcb_window_t windowUnderPointer() const;
    xcb_window_t topLevelOf(xcb_window_t window) const;
    bool isWithin(xcb_window_t window, xcb_window_t ancestor) const;
    void receive(xcb_window_t visitor, const Focus &before);
    void moveFocus(xcb_window_t window);

    // A program may want the keys in a window of its own below the top-level
    // one: where they were when it was last seen active.
    mutable Focus m_lastSeen;
    // Without a window manager: the window of ours that was given the focus, and
    // what had it before.
    xcb_window_t m_visitor = XCB_NONE;
    Focus m_before;
};

} // namespace nivora::linuxdesktop
