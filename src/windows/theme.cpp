#include "windows/theme.h"

#include <QApplication>
#include <QFontInfo>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

struct ThemeColors
{
    QColor window, base, text, disabled, button, accent, onAccent, tooltip;
};

const ThemeColors lightColors{
    .window = QColor(0xFB, 0xFB, 0xFC),
    .base = QColor(0xFF, 0xFF, 0xFF),
    .text = QColor(0x1C, 0x1D, 0x21),
    .disabled = QColor(0x1C, 0x1D, 0x21, 0x66),
    .button = QColor(0xEE, 0xEF, 0xF2),
    .accent = QColor(0x2F, 0x66, 0xDF),
    .onAccent = QColor(0xFF, 0xFF, 0xFF),
    .tooltip = QColor(0xFF, 0xFF, 0xFF),
};

const ThemeColors darkColors{
    .window = QColor(0x25, 0x26, 0x2A),
    .base = QColor(0x1D, 0x1E, 0x21),
    .text = QColor(0xEC, 0xED, 0xEF),
    .disabled = QColor(0xEC, 0xED, 0xEF, 0x66),
    .button = QColor(0x36, 0x38, 0x3E),
    .accent = QColor(0x3E, 0x74, 0xEC),
    .onAccent = QColor(0xFF, 0xFF, 0xFF),
    .tooltip = QColor(0x36, 0x38, 0x3E),
};

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(float(opacity));
    return color;
}

// The one whose ideographs the reader of the interface is used to.
Language interfaceReading()
{
    const QLocale locale;
    if (locale.language() == QLocale::Japanese)
        return Language::Japanese;
    return locale.script() == QLocale::TraditionalChineseScript ? Language::TraditionalChinese
                                                                : Language::Chinese;
}

// Fonts that print ideographs as this language does, the usual ones of Linux
// desktops first. Where the language tells nothing, that of the interface does.
QStringList ideographFamilies(Language language)
{
    const auto families = [](const QString &region, const QStringList &others) {
        return QStringList{u"Noto Sans CJK "_s + region, u"Noto Sans "_s + region,
                           u"Source Han Sans "_s + region} +
               others;
    };
    switch (language) {
    case Language::Japanese:
    case Language::Romaji:
    case Language::Hiragana:
        return families(u"JP"_s,
                        {u"IPAexGothic"_s, u"IPAGothic"_s, u"TakaoGothic"_s, u"VL Gothic"_s});
    case Language::Korean:
        return families(u"KR"_s, {u"NanumGothic"_s, u"UnDotum"_s});
    case Language::TraditionalChinese:
        return families(u"TC"_s, {u"AR PL UMing TW"_s, u"WenQuanYi Zen Hei"_s});
    case Language::Cantonese:
        return families(u"HK"_s, {u"Noto Sans CJK TC"_s, u"AR PL UMing HK"_s});
    case Language::English:
    case Language::Auto:
        return ideographFamilies(interfaceReading());
    case Language::Chinese:
        break;
    }
    return families(u"SC"_s, {u"WenQuanYi Micro Hei"_s, u"WenQuanYi Zen Hei"_s});
}

} // namespace

QPalette themePalette(bool dark)
{
    const ThemeColors &colors = dark ? darkColors : lightColors;
    QPalette palette(colors.button, colors.window);
    palette.setColor(QPalette::Window, colors.window);
    palette.setColor(QPalette::Base, colors.base);
    palette.setColor(QPalette::AlternateBase, colors.window);
    palette.setColor(QPalette::Button, colors.button);
    palette.setColor(QPalette::ToolTipBase, colors.tooltip);
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::HighlightedText, colors.onAccent);
    palette.setColor(QPalette::Link, colors.accent);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::BrightText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, colors.disabled);
    }
    palette.setColor(QPalette::PlaceholderText, colors.disabled);
    return palette;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QColor secondaryText(const QPalette &palette)
{
    // Light text on dark needs a little more to read as well.
    return withOpacity(palette.color(QPalette::WindowText), isDark(palette) ? 0.62 : 0.58);
}

QColor faintText(const QPalette &palette)
{
    return withOpacity(palette.color(QPalette::WindowText), 0.35);
}

QColor errorText(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xFF, 0x7B, 0x72) : QColor(0xC7, 0x2E, 0x2E);
}

QColor hairline(const QPalette &palette)
{
    return withOpacity(palette.color(QPalette::WindowText), isDark(palette) ? 0.16 : 0.12);
}

QColor hoverTint(const QPalette &palette)
{
    return withOpacity(palette.color(QPalette::WindowText), 0.12);
}

QFont textFont(int pixelSize, Language language)
{
    QFont font = QApplication::font();
    // The desktop may name a kind of font, "Sans Serif". In a list that would be
    // passed over, and Latin text got the quotation marks of ideographs.
    font.setFamilies(QStringList{QFontInfo(font).family()} + ideographFamilies(language));
    font.setPixelSize(pixelSize);
    return font;
}

QFont titleFont(int pixelSize)
{
    QFont font = textFont(pixelSize);
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace nivora
