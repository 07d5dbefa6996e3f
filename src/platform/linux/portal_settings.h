#pragma once

#include <QDBusPendingReply>
#include <QMap>
#include <QVariantMap>

namespace nivora::linuxdesktop {

// What the desktop portal tells of the user's settings.
// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
namespace portal {

using SettingsByNamespace = QMap<QString, QVariantMap>;
using Answer = QDBusPendingReply<SettingsByNamespace>;

extern const QString service;
extern const QString path;
extern const QString settingsInterface;

// Whether there is a session bus to ask on.
bool isReachable();

// Asks for the settings below these names; the answer takes two seconds at most. Only
// where the portal is reachable.
Answer readSettings(const QStringList &namespaces);

// Values come wrapped once or twice.
QVariant unwrapped(QVariant value);

} // namespace portal

} // namespace nivora::linuxdesktop
