#pragma once

#include "platform/task.h"

#include <QRect>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace nivora::platform {

using WindowId = quint32;

// A top-level window of any program.
struct ForeignWindow
{
    WindowId id = 0;
    qint64 processId = 0; // 0 if unknown
    QString className;    // the program's class, "XTerm"; empty if unknown
    QString instanceName; // "xterm"; empty if unknown

    bool operator==(const ForeignWindow &) const = default;
};

// The windows of the session. Main thread only; each call is one exchange with
// the local display server.
class WindowSystem
{
public:
    virtual ~WindowSystem() = default;

    // The window that the user works in now, absent if there is none.
    virtual std::optional<ForeignWindow> activeWindow() const = 0;

    // Whether key presses go into this window now: it is active and the input
    // focus lies in it or below it.
    virtual bool hasInputFocus(WindowId window) const = 0;

    // Whether the keyboard belongs to no window because the window manager is gone.
    virtual bool isKeyboardLost() const { return false; }

    // Asks the window manager to activate the window. It may refuse.
    virtual void requestActivation(WindowId window) = 0;

    // Whether the window's program handles its events: it answers through this
    // window within `deadline`. Yes for a program that does not take such
    // questions, and from a system that has no way to ask.
    virtual Task isResponding(WindowId window, std::chrono::milliseconds deadline,
                              std::function<void(bool)> done) const
    {
        Q_UNUSED(window)
        Q_UNUSED(deadline)
        return delay({}, [done = std::move(done)] { done(true); });
    }

    // Whether the desktop blends windows with what lies behind them.
    virtual bool isCompositing() const = 0;

    // The part of a screen that docks and bars leave free. Both in device pixels
    // with the origin at the top-left of all screens.
    virtual QRect workArea(const QRect &screen) const { return screen; }

    // Tells the desktop that this many device pixels along each edge of a window
    // of ours are its shadow: no part of its frame, and transparent to the
    // pointer. `size` is the window's in device pixels; to be told again when it
    // changes. 0 for none.
    virtual void setShadow(WindowId window, const QSize &size, int margin)
    {
        Q_UNUSED(window)
        Q_UNUSED(size)
        Q_UNUSED(margin)
    }
};

} // namespace nivora::platform
