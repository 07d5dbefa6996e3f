#pragma once

#include <Qt>

#include <chrono>
#include <functional>

namespace nivora::platform {

// A key together with the modifiers held with it.
struct KeyChord
{
    Qt::Key key = Qt::Key_unknown;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;

    bool operator==(const KeyChord &) const = default;
};

// What a key event tap reports.
struct KeyEvent
{
    enum class Kind {
        KeyDown,          // a key that is no modifier went down; repeats are not reported
        ModifiersChanged, // a modifier key, or a lock key, went down or up
        Interrupted,      // events may have been missed; the tap goes on by itself
    };
    enum class Key { LeftShift, RightShift, Other };

    Kind kind = Kind::KeyDown;
    Key key = Key::Other;
    // Whether any Shift key is down after this event.
    bool shiftHeld = false;
    // When the key moved, on a clock that only grows. Not the time of delivery:
    // a busy program still sees the true gap between two presses.
    std::chrono::milliseconds time{0};
};

// Watches the whole session's keyboard without altering or swallowing anything.
class KeyEventTap
{
public:
    virtual ~KeyEventTap() = default;

    // True if events arrive from now on. `handler` runs on the main thread,
    // never from within start(). A second start replaces the handler.
    virtual bool start(std::function<void(const KeyEvent &)> handler) = 0;
};

// Reserves chords for this program in every application of the session.
class GlobalHotKey
{
public:
    virtual ~GlobalHotKey() = default;

    // False when another program holds the chord. `pressed` runs on the main
    // thread at each press, whatever the state of CapsLock and NumLock.
    virtual bool grab(const KeyChord &chord, std::function<void()> pressed) = 0;
};

// Presses keys on the user's behalf.
class KeySynthesizer
{
public:
    virtual ~KeySynthesizer() = default;

    // One key-down and one key-up of `chord`, to the window that has the focus.
    // Modifiers that the user holds at this moment are released first, so that
    // exactly the chord's modifiers are down; they are not pressed again.
    // False when the key does not exist on this keyboard.
    virtual bool press(const KeyChord &chord) = 0;
};

} // namespace nivora::platform
