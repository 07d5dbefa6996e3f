#pragma once

#include "platform/keys.h"
#include "x11_connection.h"
#include "x11_layouts.h"

#include <array>
#include <bitset>
#include <optional>
#include <vector>

namespace nivora::linuxdesktop {

// What the keys of the current keyboard mean. Follows changes of the layout:
// the tables are read again at the first question after one.
class X11Keyboard final : public X11EventHandler
{
public:
    using KeySet = std::bitset<256>; // by key code

    explicit X11Keyboard(X11Connection &connection);
    // Takes back the keys that addKey() gave a meaning.
    ~X11Keyboard() override;

    // Whether the key is a modifier or a lock key.
    bool isModifier(xcb_keycode_t code);
    platform::KeyEvent::Key shiftSide(xcb_keycode_t code);

    // The key that gives this symbol without Shift, in this layout if it has it,
    // otherwise in another of the user's layouts. Programs take their short cuts
    // from either.
    std::optional<xcb_keycode_t> keyFor(Qt::Key key, int layout = 0);
    // Modifiers, locks, buttons and layout in effect now; 0 when the server did
    // not answer.
    uint16_t state();
    // The layout in use, counted from 0.
    int currentLayout();
    // Where PC keyboards have this letter, whatever it gives in the user's layout.
    static std::optional<xcb_keycode_t> usualPlaceOf(Qt::Key key);
    // Makes a key that means nothing give this symbol, for layouts that have no
    // Latin letters. All programs learn of it before they see the key pressed.
    std::optional<xcb_keycode_t> addKey(Qt::Key key);

    // A key for one modifier, and the state bits of several. Absent where the
    // keyboard has no such modifier.
    std::optional<xcb_keycode_t> modifierKey(Qt::KeyboardModifier modifier);
    std::optional<uint16_t> modifierMask(Qt::KeyboardModifiers modifiers);
    // The state bits of all that chords are made with.
    uint16_t chordModifiers();
    // The state bit of NumLock, 0 if there is none.
    uint16_t numLockMask();

    // The keys that are down now; absent when the server did not answer.
    std::optional<KeySet> pressedKeys();

    void handleEvent(const xcb_generic_event_t &event) override;

private:
    using Row = std::vector<xcb_keycode_t>;

    void ensureLoaded();
    xcb_keysym_t symbol(xcb_keycode_t code, int column) const;
    std::optional<xcb_keycode_t> keyInColumn(int column, xcb_keysym_t wanted) const;
    bool carries(xcb_keycode_t code, xcb_keysym_t symbol) const;
    std::optional<int> modifierRow(std::initializer_list<xcb_keysym_t> symbols);

    bool m_loaded = false;
    xcb_keycode_t m_firstCode = 8;
    int m_columns = 0;
    std::vector<xcb_keysym_t> m_symbols; // m_columns for each key code
    std::array<Row, 8> m_modifiers;      // Shift, Lock, Control, Mod1 to Mod5
    KeySet m_modifierKeys;
    std::optional<X11Layouts> m_layouts; // read when the two above do not suffice
    struct AddedKey
    {
        xcb_keycode_t code;
        xcb_keysym_t symbol;
    };
    std::vector<AddedKey> m_addedKeys;
};

} // namespace nivora::linuxdesktop
