#include "x11_keyboard.h"

namespace nivora::linuxdesktop {

namespace {

enum Symbol : xcb_keysym_t {
    NoSymbol = 0,
    ModeSwitch = 0xff7e,
    NumLock = 0xff7f,
    ScrollLock = 0xff14,
    ShiftLeft = 0xffe1,
    ShiftRight = 0xffe2,
    ControlLeft = 0xffe3,
    ControlRight = 0xffe4,
    MetaLeft = 0xffe7,
    AltLeft = 0xffe9,
    AltRight = 0xffea,
    SuperLeft = 0xffeb,
    SuperRight = 0xffec,
    HyperRight = 0xffee,
    IsoLock = 0xfe01,
    IsoLevel5Lock = 0xfe13,
};

bool isModifierSymbol(xcb_keysym_t symbol)
{
    return (symbol >= ShiftLeft && symbol <= HyperRight) ||
           (symbol >= IsoLock && symbol <= IsoLevel5Lock) || symbol == ModeSwitch ||
           symbol == NumLock || symbol == ScrollLock;
}

// Keys whose symbol is not their Latin character.
struct NamedKey
{
    Qt::Key key;
    xcb_keysym_t symbol;
};
constexpr NamedKey namedKeys[] = {
    {Qt::Key_Backspace, 0xff08}, {Qt::Key_Tab, 0xff09},      {Qt::Key_Return, 0xff0d},
    {Qt::Key_Escape, 0xff1b},    {Qt::Key_Home, 0xff50},     {Qt::Key_Left, 0xff51},
    {Qt::Key_Up, 0xff52},        {Qt::Key_Right, 0xff53},    {Qt::Key_Down, 0xff54},
    {Qt::Key_PageUp, 0xff55},    {Qt::Key_PageDown, 0xff56}, {Qt::Key_End, 0xff57},
    {Qt::Key_Insert, 0xff63},    {Qt::Key_Delete, 0xffff},
};

xcb_keysym_t symbolOf(Qt::Key key)
{
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return 'a' + (key - Qt::Key_A);
    if (key >= Qt::Key_Space && key <= Qt::Key_AsciiTilde)
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return 0xffbe + (key - Qt::Key_F1);
    for (const NamedKey &named : namedKeys) {
        if (named.key == key)
            return named.symbol;
    }
    return NoSymbol;
}

// A key code has two columns for each of the first two layouts: what it gives
// without and with Shift.
constexpr int columnsPerLayout = 2;
constexpr int layoutsInTable = 2;

} // namespace

X11Keyboard::X11Keyboard(X11Connection &connection)
    : X11EventHandler(connection)
{
}

X11Keyboard::~X11Keyboard()
{
    if (m_addedKeys.empty())
        return;
    ensureLoaded();
    for (const AddedKey &added : m_addedKeys) {
        // A new layout has taken it away already.
        if (!connection().isValid() || symbol(added.code, 0) != added.symbol)
            continue;
        const xcb_keysym_t nothing = NoSymbol;
        xcb_change_keyboard_mapping(connection().xcb(), 1, added.code, 1, &nothing);
    }
    connection().flush();
}

void X11Keyboard::handleEvent(const xcb_generic_event_t &event)
{
    // A change of layout comes as several of these at once.
    if (eventType(event) == XCB_MAPPING_NOTIFY &&
        eventAs<xcb_mapping_notify_event_t>(event).request != XCB_MAPPING_POINTER)
        m_loaded = false;
}

void X11Keyboard::ensureLoaded()
{
    if (m_loaded || !connection().isValid())
        return;
    xcb_connection_t *c = connection().xcb();
    const auto *setup = xcb_get_setup(c);
    const auto mappingCookie = xcb_get_keyboard_mapping(
        c, setup->min_keycode, setup->max_keycode - setup->min_keycode + 1);
    const auto modifierCookie = xcb_get_modifier_mapping(c);
    const auto mapping = connection().reply<xcb_get_keyboard_mapping_reply>(mappingCookie);
    const auto modifiers = connection().reply<xcb_get_modifier_mapping_reply>(modifierCookie);
    if (!mapping || !modifiers)
        return; // the tables of before serve until the server answers again

    m_loaded = true;
    m_layouts.reset();
    m_firstCode = setup->min_keycode;
    m_columns = mapping->keysyms_per_keycode;
    const auto *symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    m_symbols.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(mapping.get()));

    m_modifierKeys.reset();
    const auto *codes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    for (Row &row : m_modifiers) {
        row.clear();
        for (int i = 0; i < modifiers->keycodes_per_modifier; ++i, ++codes) {
            if (*codes == 0)
                continue;
            row.push_back(*codes);
            m_modifierKeys.set(*codes);
        }
    }
    for (int code = setup->min_keycode; code <= setup->max_keycode; ++code) {
        if (isModifierSymbol(symbol(code, 0)))
            m_modifierKeys.set(code);
    }
}

xcb_keysym_t X11Keyboard::symbol(xcb_keycode_t code, int column) const
{
    const int index = (code - m_firstCode) * m_columns + column;
    return column < m_columns && index >= 0 && index < int(m_symbols.size()) ? m_symbols[index]
                                                                             : NoSymbol;
}

bool X11Keyboard::carries(xcb_keycode_t code, xcb_keysym_t wanted) const
{
    for (int column = 0; column < m_columns; ++column) {
        if (symbol(code, column) == wanted)
            return true;
    }
    return false;
}

bool X11Keyboard::isModifier(xcb_keycode_t code)
{
    ensureLoaded();
    return m_modifierKeys.test(code);
}

platform::KeyEvent::Key X11Keyboard::shiftSide(xcb_keycode_t code)
{
    ensureLoaded();
    switch (symbol(code, 0)) {
    case ShiftLeft:
        return platform::KeyEvent::Key::LeftShift;
    case ShiftRight:
        return platform::KeyEvent::Key::RightShift;
    default:
        return platform::KeyEvent::Key::Other;
    }
}

std::optional<xcb_keycode_t> X11Keyboard::keyInColumn(int column, xcb_keysym_t wanted) const
{
    const int codes = m_columns > 0 ? int(m_symbols.size()) / m_columns : 0;
    for (int i = 0; i < codes; ++i) {
        const xcb_keycode_t code = m_firstCode + i;
        if (symbol(code, column) == wanted)
            return code;
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> X11Keyboard::keyFor(Qt::Key key, int layout)
{
    ensureLoaded();
    const xcb_keysym_t wanted = symbolOf(key);
    if (wanted == NoSymbol)
        return std::nullopt;
    if (layout < layoutsInTable) {
        for (const int each : {layout, 0, 1}) {
            if (const auto code = keyInColumn(each * columnsPerLayout, wanted))
                return code;
        }
    }
    if (!m_layouts)
        m_layouts = X11Layouts::read(connection().displayName());
    return m_layouts->keyFor(wanted, layout);
}

uint16_t X11Keyboard::state()
{
    if (!connection().isValid())
        return 0;
    const auto pointer = connection().reply<xcb_query_pointer_reply>(
        xcb_query_pointer(connection().xcb(), connection().root()));
    return pointer ? pointer->mask : 0;
}

int X11Keyboard::currentLayout()
{
    // The two bits above the buttons.
    return (state() >> 13) & 3;
}

std::optional<xcb_keycode_t> X11Keyboard::usualPlaceOf(Qt::Key key)
{
    // The letter rows from left to right; their key codes follow on one another.
    struct Row
    {
        QByteArrayView letters;
        xcb_keycode_t first;
    };
    constexpr Row rows[] = {{"QWERTYUIOP", 24}, {"ASDFGHJKL", 38}, {"ZXCVBNM", 52}};
    if (key < Qt::Key_A || key > Qt::Key_Z)
        return std::nullopt;
    for (const Row &row : rows) {
        const auto place = row.letters.indexOf(char(key));
        if (place >= 0)
            return xcb_keycode_t(row.first + place);
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> X11Keyboard::addKey(Qt::Key key)
{
    ensureLoaded();
    const xcb_keysym_t wanted = symbolOf(key);
    if (!connection().isValid() || wanted < 'a' || wanted > 'z' || m_columns == 0)
        return std::nullopt;
    // From the end, where keyboards have the keys that hardly any has.
    for (int code = m_firstCode + int(m_symbols.size()) / m_columns - 1; code >= m_firstCode;
         --code) {
        const bool isFree = std::all_of(&m_symbols[(code - m_firstCode) * m_columns],
                                        &m_symbols[(code - m_firstCode) * m_columns] + m_columns,
                                        [](xcb_keysym_t each) { return each == NoSymbol; });
        if (!isFree || m_modifierKeys.test(code))
            continue;
        const xcb_keysym_t capital = wanted - 'a' + 'A';
        const xcb_keysym_t symbols[] = {wanted, capital};
        xcb_change_keyboard_mapping(connection().xcb(), 1, xcb_keycode_t(code), 2, symbols);
        m_loaded = false;
        m_addedKeys.push_back({xcb_keycode_t(code), wanted});
        return xcb_keycode_t(code);
    }
    return std::nullopt;
}

std::optional<int> X11Keyboard::modifierRow(std::initializer_list<xcb_keysym_t> symbols)
{
    ensureLoaded();
    for (const xcb_keysym_t wanted : symbols) {
        for (std::size_t row = 0; row < m_modifiers.size(); ++row) {
            for (const xcb_keycode_t code : m_modifiers[row]) {
                if (carries(code, wanted))
                    return int(row);
            }
        }
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> X11Keyboard::modifierKey(Qt::KeyboardModifier modifier)
{
    ensureLoaded();
    std::array<xcb_keysym_t, 2> symbols{};
    switch (modifier) {
    case Qt::ShiftModifier:
        symbols = {ShiftLeft, ShiftRight};
        break;
    case Qt::ControlModifier:
        symbols = {ControlLeft, ControlRight};
        break;
    case Qt::AltModifier:
        symbols = {AltLeft, AltRight};
        break;
    case Qt::MetaModifier:
        symbols = {SuperLeft, SuperRight};
        break;
    default:
        return std::nullopt;
    }
    for (const xcb_keysym_t wanted : symbols) {
        for (const Row &row : m_modifiers) {
            for (const xcb_keycode_t code : row) {
                if (symbol(code, 0) == wanted)
                    return code;
            }
        }
    }
    return std::nullopt;
}

std::optional<uint16_t> X11Keyboard::modifierMask(Qt::KeyboardModifiers modifiers)
{
    uint16_t mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= XCB_MOD_MASK_SHIFT;
    if (modifiers & Qt::ControlModifier)
        mask |= XCB_MOD_MASK_CONTROL;
    if (modifiers & Qt::AltModifier) {
        const auto row = modifierRow({AltLeft, AltRight, MetaLeft});
        if (!row)
            return std::nullopt;
        mask |= 1 << *row;
    }
    if (modifiers & Qt::MetaModifier) {
        const auto row = modifierRow({SuperLeft, SuperRight});
        if (!row)
            return std::nullopt;
        mask |= 1 << *row;
    }
    return mask;
}

uint16_t X11Keyboard::chordModifiers()
{
    uint16_t mask = 0;
    for (const auto modifier :
         {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        mask |= modifierMask(modifier).value_or(0);
    return mask;
}

uint16_t X11Keyboard::numLockMask()
{
    const auto row = modifierRow({NumLock});
    return row ? 1 << *row : 0;
}

std::optional<X11Keyboard::KeySet> X11Keyboard::pressedKeys()
{
    if (!connection().isValid())
        return std::nullopt;
    const auto keymap =
        connection().reply<xcb_query_keymap_reply>(xcb_query_keymap(connection().xcb()));
    if (!keymap)
        return std::nullopt;
    KeySet pressed;
    for (std::size_t code = 0; code < pressed.size(); ++code)
        pressed.set(code, keymap->keys[code / 8] >> (code % 8) & 1);
    return pressed;
}

} // namespace nivora::linuxdesktop
