#pragma once

#include "x11_raw_input.h"

#include <deque>

namespace nivora::linuxdesktop {

// Tells the key events that this program made from those of the user.
//
// The server makes a simulated event while it carries out the request for it, and
// an event carries the number of the last request of the connection that it is
// sent on. So an event with the number, the key and the direction of a request
// to simulate it is that request's outcome. The device would not do: other
// programs simulate keys on the same one, and theirs count as the user's.
class X11OwnInput
{
public:
    // Notes a request to simulate a key, made on the connection that the events
    // are received on.
    void expect(uint32_t sequence, xcb_keycode_t code, bool press)
    {
        m_expected.push_back({sequence, code, press});
    }

    // Whether the event is one of ours. Each event is to be asked for once, in
    // the order of arrival.
    bool take(const X11RawInput &input)
    {
        // A request that had no effect, such as the release of a key that was
        // up by then, leaves no event.
        while (!m_expected.empty() && isLater(input.sequence, m_expected.front().sequence))
            m_expected.pop_front();
        if (m_expected.empty())
            return false;
        const Expected &next = m_expected.front();
        if (next.sequence != input.sequence || next.code != input.code ||
            next.press != (input.kind == X11RawInput::Kind::KeyPress))
            return false;
        m_expected.pop_front();
        return true;
    }

private:
    struct Expected
    {
        uint32_t sequence;
        xcb_keycode_t code;
        bool press;
    };
    std::deque<Expected> m_expected;
};

} // namespace nivora::linuxdesktop
