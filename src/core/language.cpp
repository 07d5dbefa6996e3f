#include "core/language.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

struct TranslatableText
{
    const char *source;
    const char *comment; // for translators
};

struct LanguageEntry
{
    Language language;
    QLatin1StringView raw;
    TranslatableText name;
    QStringView prompt;
    QLatin1StringView locale;
};

constexpr LanguageEntry entries[] = {
    {Language::Chinese, "chinese"_L1,
     QT_TRANSLATE_NOOP3("Language", "中文", "language name: Chinese"), u"中文", "zh-CN"_L1},
    {Language::Japanese, "japanese"_L1,
     QT_TRANSLATE_NOOP3("Language", "日本語", "language name: Japanese"), u"日语", "ja-JP"_L1},
    {Language::English, "english"_L1,
     QT_TRANSLATE_NOOP3("Language", "English", "language name: English"), u"英语", "en-US"_L1},
    {Language::Korean, "korean"_L1, QT_TRANSLATE_NOOP3("Language", "韩语", "language name: Korean"),
     u"韩语", "ko-KR"_L1},
    {Language::TraditionalChinese, "traditionalChinese"_L1,
     QT_TRANSLATE_NOOP3("Language", "繁体中文", "language name: Traditional Chinese"), u"繁体中文",
     "zh-TW"_L1},
    {Language::Cantonese, "cantonese"_L1,
     QT_TRANSLATE_NOOP3("Language", "粤语", "language name: Cantonese"), u"粤语", "zh-HK"_L1},
    {Language::Auto, "auto"_L1,
     QT_TRANSLATE_NOOP3("Language", "自动", "auto-detect source language"), u"中文", "zh-CN"_L1},
    {Language::Romaji, "romaji"_L1,
     QT_TRANSLATE_NOOP3("Language", "罗马字", "target: romaji transcription"), u"中文", "zh-CN"_L1},
    {Language::Hiragana, "hiragana"_L1,
     QT_TRANSLATE_NOOP3("Language", "平假名", "reading: hiragana transcription"), u"中文",
     "zh-CN"_L1},
};

const LanguageEntry &entry(Language language)
{
    return *std::ranges::find(entries, language, &LanguageEntry::language);
}

} // namespace

QString rawValue(Language language)
{
    return entry(language).raw.toString();
}

std::optional<Language> languageFromRawValue(const QString &raw)
{
    const auto *found =
        std::ranges::find_if(entries, [&](const LanguageEntry &each) { return each.raw == raw; });
    if (found == std::end(entries))
        return std::nullopt;
    return found->language;
}

QString displayName(Language language)
{
    const LanguageEntry &found = entry(language);
    return QCoreApplication::translate("Language", found.name.source, found.name.comment);
}

QString promptName(Language language)
{
    return entry(language).prompt.toString();
}

QString dictationLocale(Language language)
{
    return entry(language).locale.toString();
}

std::vector<Language> selectableTargets(Language source)
{
    std::vector<Language> targets;
    std::ranges::copy_if(selectableLanguages, std::back_inserter(targets),
                         [source](Language each) { return each != source; });
    if (source == Language::Japanese)
        targets.push_back(Language::Romaji);
    return targets;
}

} // namespace nivora
