#include "desktop/application_gestures.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

using platform::KeyChord;

// Copies in GTK, Qt, Firefox, Chromium, LibreOffice and terminals built on VTE,
// and means nothing harmful elsewhere. Ctrl+C would interrupt whatever runs in a
// terminal.
constexpr KeyChord copyChord{Qt::Key_Insert, Qt::ControlModifier};
constexpr KeyChord pasteChord{Qt::Key_V, Qt::ControlModifier};
// What terminals use, since Ctrl+V goes to the program inside. Not for others:
// it opens a dialog in LibreOffice.
constexpr KeyChord terminalPasteChord{Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier};

// Window classes in lower case. These copy with Ctrl+Insert...
constexpr std::array vteTerminals{
    "deepin-terminal"_L1,
    "gnome-terminal"_L1,
    "gnome-terminal-server"_L1,
    "guake"_L1,
    "kgx"_L1,
    "lxterminal"_L1,
    "mate-terminal"_L1,
    "org.gnome.console"_L1,
    "org.gnome.ptyxis"_L1,
    "roxterm"_L1,
    "sakura"_L1,
    "terminator"_L1,
    "tilix"_L1,
    "xfce4-terminal"_L1,
};
// ...these have no gesture that is known to be safe...
constexpr std::array otherTerminals{
    "alacritty"_L1, "foot"_L1, "kitty"_L1, "konsole"_L1, "org.wezfurlong.wezterm"_L1, "yakuake"_L1,
};
// ...and these know PRIMARY only, which is not ours to take.
constexpr std::array primaryTerminals{
    "rxvt"_L1, "st"_L1, "st-256color"_L1, "urxvt"_L1, "uxterm"_L1, "xterm"_L1,
};

// Chromium and what is built on it.
constexpr std::array chromiumBrowsers{
    "brave-browser"_L1,  "chromium"_L1, "chromium-browser"_L1, "google-chrome"_L1,
    "microsoft-edge"_L1, "opera"_L1,    "vivaldi-stable"_L1,
};

bool isOneOf(const auto &classes, const platform::ForeignWindow &window)
{
    const QString name = window.className.toLower();
    return std::ranges::any_of(classes, [&](QLatin1StringView each) { return name == each; });
}

} // namespace

ApplicationGestures gesturesFor(const platform::ForeignWindow &window)
{
    if (isOneOf(primaryTerminals, window))
        return {std::nullopt, std::nullopt, false};
    if (isOneOf(otherTerminals, window))
        return {std::nullopt, terminalPasteChord, false};
    if (isOneOf(vteTerminals, window))
        return {copyChord, terminalPasteChord, false};
    return {.copy = copyChord,
            .paste = pasteChord,
            .primaryMayBeSecret = isOneOf(chromiumBrowsers, window)};
}

} // namespace nivora
