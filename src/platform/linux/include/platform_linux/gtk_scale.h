#pragma once

#include <QByteArray>

#include <optional>

namespace nivora::linuxdesktop {

class X11Connection;

// By how much a GTK 3 program enlarges its windows, as it decides at its start:
// its environment first, then the desktop's settings. It tells assistive tools
// places in units of its own, each so many pixels wide. At least 1. Two exchanges
// with the server.
int gtkScale(X11Connection &connection, qint64 process);

// The value of an integer among the desktop's settings, absent where there is
// none or the settings are damaged.
// https://specifications.freedesktop.org/xsettings-spec/latest/
std::optional<int> desktopSetting(const QByteArray &settings, const QByteArray &name);

} // namespace nivora::linuxdesktop
