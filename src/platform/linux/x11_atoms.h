#pragma once

#include <array>
#include <cstddef>

namespace nivora::linuxdesktop {

// The atoms that this program uses by name. They are interned in one batch when
// a connection is made; X11Connection::atom() maps them to their numbers.
enum class X11Atom : std::size_t {
    AtomPair,
    Clipboard,
    ClipboardManager,
    Incr,
    Multiple,
    NetActiveWindow,
    NetSupportingWmCheck,
    NetSystemTrayS0,
    NetWmCmS0,
    NetWmPid,
    NetWmPing,
    Primary,
    SaveTargets,
    String,
    Targets,
    TextPlainUtf8,
    Timestamp,
    Transfer,
    Utf8String,
    WmProtocols,
    XsettingsS0,
    XsettingsSettings,
};

inline constexpr std::array x11AtomNames{
    "ATOM_PAIR",
    "CLIPBOARD",
    "CLIPBOARD_MANAGER",
    "INCR",
    "MULTIPLE",
    "_NET_ACTIVE_WINDOW",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_SYSTEM_TRAY_S0",
    "_NET_WM_CM_S0",
    "_NET_WM_PID",
    "_NET_WM_PING",
    "PRIMARY",
    "SAVE_TARGETS",
    "STRING",
    "TARGETS",
    "text/plain;charset=utf-8",
    "TIMESTAMP",
    "NIVORA_TRANSFER",
    "UTF8_STRING",
    "WM_PROTOCOLS",
    "_XSETTINGS_S0",
    "_XSETTINGS_SETTINGS",
};
static_assert(x11AtomNames.size() == static_cast<std::size_t>(X11Atom::XsettingsSettings) + 1);

} // namespace nivora::linuxdesktop
