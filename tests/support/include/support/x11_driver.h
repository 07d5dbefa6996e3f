#pragma once

#include "support/wait.h"

#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

namespace nivora::test {

// The keyboard, the pointer and the eyes of the person who uses the desktop: a
// connection to the X server of its own that presses keys by XTest and reads
// what windows there are.
//
// Keys are X key symbols (X11/keysymdef.h). All places are in pixels from the
// top-left of the screen.
class X11Driver
{
public:
    using Symbol = quint32;
    using WindowId = quint32;

    struct Window
    {
        WindowId id = 0;
        QString instanceName; // "nivora"
        QString className;    // "Nivora"
        QString role;         // empty if it has none
        QString title;
        bool mapped = false; // and all its parents
        QRect geometry;      // without the frame
    };
    using Condition = std::function<bool(const Window &)>;

    explicit X11Driver(const QByteArray &displayName);
    ~X11Driver();
    X11Driver(const X11Driver &) = delete;
    X11Driver &operator=(const X11Driver &) = delete;

    bool isValid() const;

    // These return once the server has the events. Keys that this keyboard lacks
    // are not pressed.
    void hold(Symbol key);
    void release(Symbol key);
    // Presses the keys in order and releases them in reverse.
    void press(std::initializer_list<Symbol> chord);
    // Left Shift twice, `gap` from the first press to the second. Returns the
    // moment of the second press.
    Clock::time_point tapShiftTwice(std::chrono::milliseconds gap = std::chrono::milliseconds(120));
    void movePointer(QPoint place);
    enum class Button { Left = 1, Right = 3 };
    void click(Button button = Button::Left);
    // Moves with the left button held.
    void drag(QPoint from, QPoint to);

    // Every window that belongs to a program, mapped or not.
    std::vector<Window> windows() const;
    // The first mapped window that meets the condition.
    std::optional<Window> find(const Condition &condition) const;
    std::optional<Window> waitForMapped(const Condition &condition,
                                        std::chrono::milliseconds bound) const;
    bool waitForGone(const Condition &condition, std::chrono::milliseconds bound) const;

    // 0 when no window is active.
    WindowId activeWindow() const;
    bool waitForActive(WindowId window, std::chrono::milliseconds bound) const;

    // What the screen shows in this rectangle; null when it lies outside.
    QImage picture(const QRect &rectangle) const;

    static Condition ofClass(const QString &className, const QString &role = {});

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace nivora::test
