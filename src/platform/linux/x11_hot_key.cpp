#include "x11_hot_key.h"

#include "platform/log.h"
#include "x11_raw_input.h"

#include <xcb/xinput.h>

namespace nivora::linuxdesktop {

namespace {

// A server that is busy with the new layout may not answer in time, and another
// program may hold the key in its own old layout's place for a moment.
constexpr int retries = 10;
constexpr std::chrono::seconds retryPause{1};

} // namespace

X11HotKey::X11HotKey(X11Connection &connection, std::function<void(xcb_timestamp_t)> pressSeen)
    : X11EventHandler(connection)
    , m_keyboard(connection)
    , m_pressSeen(std::move(pressSeen))
    , m_hasRawInput(hasRawInput(connection))
{
    // A new layout is announced by several events; one look after the last does.
    m_mappingChanged.setSingleShot(true);
    m_mappingChanged.setInterval(0);
    QObject::connect(&m_mappingChanged, &QTimer::timeout, [this] {
        m_retriesLeft = retries;
        reserveAgain();
    });
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryPause);
    QObject::connect(&m_retry, &QTimer::timeout, [this] { reserveAgain(); });
}

bool X11HotKey::grab(const platform::KeyChord &chord, std::function<void()> pressed)
{
    if (!connection().isValid())
        return false;
    for (Reserved &reserved : m_reserved) {
        if (reserved.chord == chord && reserved.keys.code != 0) {
            reserved.pressed = std::move(pressed);
            return true;
        }
    }
    Reserved reserved;
    reserved.chord = chord;
    reserved.pressed = std::move(pressed);
    if (!reserve(reserved))
        return false;
    std::erase_if(m_reserved, [&](const Reserved &old) { return old.chord == chord; });
    m_reserved.push_back(std::move(reserved));
    return true;
}

std::vector<uint16_t> X11HotKey::withLocks(uint16_t modifiers)
{
    // A grab holds for exactly its modifiers, and the locks count among them.
    const uint16_t capsLock = modifiers | XCB_MOD_MASK_LOCK;
    const uint16_t numLock = m_keyboard.numLockMask();
    if (numLock == 0)
        return {modifiers, capsLock};
    return {modifiers, capsLock, uint16_t(modifiers | numLock), uint16_t(capsLock | numLock)};
}

bool X11HotKey::reserve(Reserved &reserved)
{
    auto code = m_keyboard.keyFor(reserved.chord.key);
    if (!code)
        code = X11Keyboard::usualPlaceOf(reserved.chord.key);
    const auto modifiers = m_keyboard.modifierMask(reserved.chord.modifiers);
    Keys wanted;
    if (code && modifiers) {
        reserved.modifiers = *modifiers;
        wanted = {*code, withLocks(*modifiers)};
    }
    if (wanted == reserved.keys)
        return wanted.code != 0;
    // The new before the old goes, so that there is no moment without.
    if (!take(wanted)) {
        giveUp(wanted, {});
        // Whoever is told of the refusal finds the chord free for others already.
        connection().synchronise();
        wanted = {};
    }
    giveUp(std::exchange(reserved.keys, wanted), reserved.keys);
    return reserved.keys.code != 0;
}

bool X11HotKey::take(const Keys &keys)
{
    xcb_connection_t *c = connection().xcb();
    std::vector<xcb_void_cookie_t> cookies;
    for (const uint16_t state : keys.states)
        cookies.push_back(xcb_grab_key_checked(c, 0, connection().root(), state, keys.code,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    // Once this has been answered, the checks below need not wait.
    bool granted = connection().synchronise();
    for (const xcb_void_cookie_t cookie : cookies) {
        if (!granted) {
            xcb_discard_reply(c, cookie.sequence);
            continue;
        }
        const X11Ptr<xcb_generic_error_t> refused(xcb_request_check(c, cookie));
        granted = !refused;
    }
    return granted;
}

void X11HotKey::giveUp(const Keys &keys, const Keys &except)
{
    // Ungrabbing what is another's does nothing.
    for (const uint16_t state : keys.states) {
        if (keys.code != except.code || !std::ranges::count(except.states, state))
            xcb_ungrab_key(connection().xcb(), keys.code, connection().root(), state);
    }
    connection().flush();
}

void X11HotKey::reserveAgain()
{
    bool complete = true;
    for (Reserved &reserved : m_reserved)
        complete = reserve(reserved) && complete;
    if (complete) {
        m_retriesLeft = 0;
        return;
    }
    if (m_retriesLeft-- > 0)
        m_retry.start();
    else
        qCWarning(log::hotkey) << "a chord could not be kept on the new keyboard layout";
}

void X11HotKey::handleEvent(const xcb_generic_event_t &event)
{
    switch (eventType(event)) {
    case XCB_KEY_PRESS:
        handlePress(eventAs<xcb_key_press_event_t>(event));
        return;
    case XCB_KEY_RELEASE:
        handleRelease(eventAs<xcb_key_release_event_t>(event).detail);
        return;
    case XCB_MAPPING_NOTIFY:
        if (eventAs<xcb_mapping_notify_event_t>(event).request != XCB_MAPPING_POINTER)
            m_mappingChanged.start();
        return;
    default:
        if (const auto raw = rawInput(connection(), event))
            handleRelease(static_cast<xcb_keycode_t>(raw->code));
    }
}

bool X11HotKey::isRepeat(const xcb_key_press_event_t &event)
{
    // Longer than keyboards take to begin with repeats: a key whose release got
    // lost must not keep the chord from working.
    constexpr uint32_t longestDelay = 2000; // milliseconds
    const bool repeat = event.detail == m_held && event.time - m_lastPress < longestDelay;
    m_lastPress = event.time;
    return repeat;
}

void X11HotKey::handlePress(const xcb_key_press_event_t &event)
{
    const bool repeat = isRepeat(event);
    if (!repeat && m_hasRawInput) {
        // Tells when the key is up again, also while nobody has a grab. Asked
        // for only now: all the user's typing would wake this program otherwise.
        m_held = event.detail;
        watchRawInput(connection(), XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
    }
    // The keyboard goes back at once: a key that is simulated in answer to the
    // chord would otherwise come to us, and so would what the user types before
    // the chord's last key is up.
    xcb_ungrab_keyboard(connection().xcb(), event.time);
    connection().flush();
    if (repeat)
        return;
    if (m_pressSeen)
        m_pressSeen(event.time);

    // The state holds locks, layouts and mouse buttons too.
    const uint16_t modifiers = event.state & m_keyboard.chordModifiers();
    for (const Reserved &reserved : m_reserved) {
        if (reserved.keys.code == event.detail && reserved.modifiers == modifiers) {
            const auto pressed = reserved.pressed; // it may be replaced by the call
            pressed();
            return;
        }
    }
}

void X11HotKey::handleRelease(xcb_keycode_t code)
{
    if (code != m_held)
        return;
    // A repeat begins with a release that never happened.
    const auto pressed = m_keyboard.pressedKeys();
    if (pressed && pressed->test(code))
        return;
    m_held = 0;
    watchRawInput(connection(), 0);
}

} // namespace nivora::linuxdesktop
