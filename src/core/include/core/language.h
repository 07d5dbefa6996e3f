#pragma once

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace nivora {

// The closed list of languages. Raw values are what settings and the history
// table store and what the cloud service is sent.
enum class Language {
    Chinese,
    Japanese,
    English,
    Korean,
    TraditionalChinese,
    Cantonese,
    Auto,     // source only: not detected yet
    Romaji,   // target only: Japanese in Latin letters
    Hiragana, // reading style
};

inline constexpr std::array allLanguages{
    Language::Chinese,
    Language::Japanese,
    Language::English,
    Language::Korean,
    Language::TraditionalChinese,
    Language::Cantonese,
    Language::Auto,
    Language::Romaji,
    Language::Hiragana,
};

// What a user can choose, in the order of the menus.
inline constexpr std::array selectableLanguages{
    Language::Chinese,   Language::TraditionalChinese,
    Language::Cantonese, Language::Japanese,
    Language::Korean,    Language::English,
};

// "chinese", "traditionalChinese", ...
QString rawValue(Language language);

// Exact and case-sensitive; absent for anything that is no raw value.
std::optional<Language> languageFromRawValue(const QString &raw);

// The name to show, in the interface's language.
QString displayName(Language language);

// The Chinese word for the language in prompts to a model. Those that have none
// of their own give "中文".
QString promptName(Language language);

// BCP 47 tag for speech recognition; "zh-CN" where the language has none.
QString dictationLocale(Language language);

// The targets to offer for a source: every selectable language but the source
// itself, and romaji at the end for Japanese.
std::vector<Language> selectableTargets(Language source);

} // namespace nivora
