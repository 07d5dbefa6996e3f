#pragma once

#include "platform/keys.h"
#include "x11_keyboard.h"

#include <QTimer>

#include <vector>

namespace nivora::linuxdesktop {

// Reserves chords by grabbing their keys on the root window. Needs a connection
// that nobody else uses: while a grab is active the server keeps raw events from
// the client that holds it.
class X11HotKey final : public platform::GlobalHotKey, private X11EventHandler
{
public:
    // `pressSeen`, if given, is told the server's time of each press before the
    // chord's own callback is called.
    explicit X11HotKey(X11Connection &connection,
                       std::function<void(xcb_timestamp_t)> pressSeen = {});

    bool grab(const platform::KeyChord &chord, std::function<void()> pressed) override;

private:
    struct Keys
    {
        xcb_keycode_t code = 0;       // 0: none
        std::vector<uint16_t> states; // the modifiers with each combination of locks

        bool operator==(const Keys &) const = default;
    };
    struct Reserved
    {
        platform::KeyChord chord;
        std::function<void()> pressed;
        uint16_t modifiers = 0;
        Keys keys; // those grabbed now
    };

    void handleEvent(const xcb_generic_event_t &event) override;
    void handlePress(const xcb_key_press_event_t &event);
    void handleRelease(xcb_keycode_t code);
    bool isRepeat(const xcb_key_press_event_t &event);
    bool reserve(Reserved &reserved);
    bool take(const Keys &keys);
    void giveUp(const Keys &keys, const Keys &except);
    void reserveAgain();
    std::vector<uint16_t> withLocks(uint16_t modifiers);

    X11Keyboard m_keyboard;
    std::function<void(xcb_timestamp_t)> m_pressSeen;
    std::vector<Reserved> m_reserved;
    bool m_hasRawInput = false;
    xcb_keycode_t m_held = 0; // the key whose press was the last one, until it is up
    xcb_timestamp_t m_lastPress = 0;
    QTimer m_mappingChanged;
    QTimer m_retry;
    int m_retriesLeft = 0;
};

} // namespace nivora::linuxdesktop
