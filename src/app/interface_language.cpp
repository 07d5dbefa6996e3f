#include "app/interface_language.h"

#include <QLocale>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

QString interfaceLanguage(const QString &choice, const QStringList &desktopLanguages)
{
    constexpr std::array codes{"zh-Hans"_L1, "zh-Hant"_L1, "ja"_L1, "en"_L1};
    if (std::ranges::find(codes, choice) != codes.end())
        return choice;
    for (const QString &each : desktopLanguages) {
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

} // namespace nivora
