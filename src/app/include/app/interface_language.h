#pragma once

#include <QString>
#include <QStringList>

namespace nivora {

// The code of the language that the interface appears in: "zh-Hans", "zh-Hant",
// "ja" or "en". `choice` is the setting, one of these or "system": then the first
// of the desktop's languages, in its order of preference, that is one of these;
// English where none is.
QString interfaceLanguage(const QString &choice, const QStringList &desktopLanguages);

} // namespace nivora
