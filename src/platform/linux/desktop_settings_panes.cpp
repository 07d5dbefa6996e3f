#include "platform_linux/desktop_settings_panes.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

struct PaneCommand
{
    QString desktop; // as in XDG_CURRENT_DESKTOP
    QString program;
    QStringList arguments;
};

// No desktop asks for leave to see the screen of an X session, so that pane is
// the nearest that there is: the one on privacy or, where there is none, on
// access. GNOME alone can switch the microphone off for all programs; elsewhere it
// is a matter of the sound.
std::vector<PaneCommand> commands(platform::SettingsPane pane)
{
    using platform::SettingsPane;
    switch (pane) {
    case SettingsPane::Accessibility:
        return {
            {u"GNOME"_s, u"gnome-control-center"_s, {u"universal-access"_s}},
            {u"KDE"_s, u"systemsettings"_s, {u"kcm_access"_s}},
            {u"KDE"_s, u"systemsettings5"_s, {u"kcm_access"_s}},
            {u"XFCE"_s, u"xfce4-accessibility-settings"_s, {}},
        };
    case SettingsPane::ScreenRecording:
        return {
            {u"GNOME"_s, u"gnome-control-center"_s, {u"privacy"_s}},
            {u"KDE"_s, u"systemsettings"_s, {}},
            {u"KDE"_s, u"systemsettings5"_s, {}},
            {u"XFCE"_s, u"xfce4-settings-manager"_s, {}},
        };
    case SettingsPane::Microphone:
        return {
            {u"GNOME"_s, u"gnome-control-center"_s, {u"microphone"_s}},
            {u"KDE"_s, u"systemsettings"_s, {u"kcm_pulseaudio"_s}},
            {u"KDE"_s, u"systemsettings5"_s, {u"kcm_pulseaudio"_s}},
            {u"XFCE"_s, u"pavucontrol"_s, {}},
        };
    }
    Q_UNREACHABLE();
}

} // namespace

bool DesktopSettingsPanes::open(platform::SettingsPane pane)
{
    std::vector<PaneCommand> candidates = commands(pane);
    const QStringList running = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toUpper().split(u':');
    std::ranges::stable_partition(
        candidates, [&](const PaneCommand &each) { return running.contains(each.desktop); });
    return std::ranges::any_of(candidates, [](const PaneCommand &each) {
        const QString program = QStandardPaths::findExecutable(each.program);
        return !program.isEmpty() && QProcess::startDetached(program, each.arguments);
    });
}

} // namespace nivora::linuxdesktop
