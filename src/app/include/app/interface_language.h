#pragma once

#include <QString>
#include <QStringList>

class QLocale;

namespace nivora {

namespace platform {
class Preferences;
}

// The user's languages, the most wanted first, as BCP 47: those of the preference
// "AppleLanguages", then the desktop's.
QStringList userLanguages(const platform::Preferences &preferences);

// The code of the language that the interface appears in: "zh-Hans", "zh-Hant",
// "ja" or "en". The first of `languages` that is one of these decides; English
// where none is.
QString interfaceLanguage(const QStringList &languages);

// How numbers and dates are written in an interface of this language: as the
// desktop has it where it is in the same language, and otherwise by the habits of
// the language, those of the desktop's country where it has any of its own.
QLocale interfaceLocale(const QString &language, const QLocale &desktop);

} // namespace nivora
