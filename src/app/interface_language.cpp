#include "app/interface_language.h"

#include "platform/preferences.h"

#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

QStringList userLanguages(const platform::Preferences &preferences)
{
    return preferences.strings(u"AppleLanguages"_s).value_or(QStringList()) +
           QLocale::system().uiLanguages();
}

QString interfaceLanguage(const QStringList &languages)
{
    for (const QString &each : languages) {
        const QLocale locale(each); // knows the usual script of a country
        switch (locale.language()) {
        case QLocale::Chinese:
            return locale.script() == QLocale::TraditionalChineseScript ? u"zh-Hant"_s
                                                                        : u"zh-Hans"_s;
        case QLocale::Japanese:
            return u"ja"_s;
        case QLocale::English:
            return u"en"_s;
        default:
            break;
        }
    }
    return u"en"_s;
}

QLocale interfaceLocale(const QString &language, const QLocale &desktop)
{
    const QLocale usual(language);
    if (desktop.language() == usual.language() && desktop.script() == usual.script())
        return desktop;
    // The C locale stands for no country.
    if (desktop.language() == QLocale::C)
        return usual;
    const QLocale ofCountry(usual.language(), usual.script(), desktop.territory());
    return ofCountry.script() == usual.script() ? ofCountry : usual;
}

} // namespace nivora
