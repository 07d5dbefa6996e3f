#include "core/language_detector.h"

#include <array>
#include <string_view>

namespace nivora {

namespace {

struct ScriptCounts
{
    qsizetype hiragana = 0;
    qsizetype katakana = 0;
    qsizetype hangul = 0;
    qsizetype han = 0;
    qsizetype latin = 0;
};

constexpr bool within(char32_t c, char32_t first, char32_t last)
{
    return c >= first && c <= last;
}

ScriptCounts countScripts(QStringView text)
{
    ScriptCounts counts;
    // All ranges lie in the basic plane, where one unit is one scalar.
    for (const QChar unit : text) {
        const char16_t c = unit.unicode();
        if (c < 0x80) {
            if (within(c | 0x20, U'a', U'z'))
                ++counts.latin;
        } else if (within(c, 0x3040, 0x309F)) {
            ++counts.hiragana;
        } else if (within(c, 0x30A0, 0x30FF) || within(c, 0xFF66, 0xFF9D)) {
            ++counts.katakana;
        } else if (within(c, 0x3130, 0x318F) || within(c, 0xAC00, 0xD7A3) ||
                   within(c, 0x1100, 0x11FF)) {
            ++counts.hangul;
        } else if (within(c, 0xF900, 0xFAFF) || within(c, 0x4E00, 0x9FFF) ||
                   within(c, 0x3400, 0x4DBF)) {
            ++counts.han;
        }
    }
    return counts;
}

std::optional<Language> decideByScripts(const ScriptCounts &counts)
{
    if (counts.hiragana >= 1)
        return Language::Japanese;
    if (counts.hangul >= 1)
        return Language::Korean;
    if (counts.katakana >= 1 && counts.han == 0)
        return Language::Japanese;
    return std::nullopt;
}

// Characters that written Cantonese uses and the other varieties do not.
constexpr std::u16string_view cantoneseMarkers = u"嘅喺咗哋㗎啲嘢冇乜嚟睇諗嗰揾攞佢唔係咁嘞";
// Frequent characters that only the traditional script has.
constexpr std::u16string_view traditionalMarkers =
    u"這個們時國會學來對開發過為點體萬與實經語區愛樣東車馬電話當後產龍廣團隊專屬";

enum class Marker : quint8 { None, Cantonese, Traditional };

constexpr char16_t firstHan = 0x3400;
constexpr char16_t lastHan = 0x9FFF;

// One look-up for each character: a text of megabytes is looked through whole.
constexpr auto markerTable = [] {
    std::array<Marker, lastHan - firstHan + 1> table{};
    for (const char16_t c : traditionalMarkers)
        table[c - firstHan] = Marker::Traditional;
    for (const char16_t c : cantoneseMarkers)
        table[c - firstHan] = Marker::Cantonese;
    return table;
}();

struct MarkerHits
{
    qsizetype cantonese = 0;
    qsizetype traditional = 0;
};

// A marker counts when it stands as a user-perceived character of its own. All
// markers are single code points outside the combining classes, so what follows
// decides that: a mark or a joiner makes it part of a longer character.
MarkerHits countMarkers(QStringView text)
{
    MarkerHits hits;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        const Marker marker =
            within(c, firstHan, lastHan) ? markerTable[c - firstHan] : Marker::None;
        if (marker == Marker::None)
            continue;
        if (i + 1 < text.size()) {
            const char32_t next = i + 2 < text.size() && text[i + 1].isHighSurrogate()
                                      ? QChar::surrogateToUcs4(text[i + 1], text[i + 2])
                                      : text[i + 1].unicode();
            if (QChar::isMark(next) || next == 0x200C || next == 0x200D)
                continue;
        }
        ++(marker == Marker::Cantonese ? hits.cantonese : hits.traditional);
    }
    return hits;
}

// Below this many ideographs the recognizer's "traditional" is not trusted.
constexpr qsizetype reliableHanCount = 8;

Language decide(QStringView text, const ScriptCounts &counts,
                std::optional<RecognizedLanguage> verdict)
{
    if (counts.han == 0) {
        switch (verdict.value_or(RecognizedLanguage::Other)) {
        case RecognizedLanguage::TraditionalChinese:
            return Language::TraditionalChinese;
        case RecognizedLanguage::SimplifiedChinese:
            return Language::Chinese;
        case RecognizedLanguage::Japanese:
            return Language::Japanese;
        case RecognizedLanguage::Korean:
            return Language::Korean;
        case RecognizedLanguage::English:
            return Language::English;
        case RecognizedLanguage::Other:
            return counts.latin >= 1 ? Language::English : Language::Chinese;
        }
    }

    const MarkerHits hits = countMarkers(text);
    // One hit may be a quotation or a name; two are a habit.
    if (hits.cantonese >= 2)
        return Language::Cantonese;
    if (hits.traditional >= 1)
        return Language::TraditionalChinese;
    if (verdict == RecognizedLanguage::TraditionalChinese && counts.han >= reliableHanCount)
        return Language::TraditionalChinese;
    return Language::Chinese;
}

template<typename Verdict>
Language detectWith(QStringView text, Verdict verdict)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return Language::Chinese;
    const ScriptCounts counts = countScripts(trimmed);
    if (const auto decided = decideByScripts(counts))
        return *decided;
    return decide(trimmed, counts, verdict(trimmed));
}

} // namespace

Language LanguageDetector::detect(QStringView text)
{
    return detectWith(text, [](QStringView trimmed) { return recognizeLanguage(trimmed); });
}

Language LanguageDetector::detect(QStringView text, std::optional<RecognizedLanguage> verdict)
{
    return detectWith(text, [verdict](QStringView) { return verdict; });
}

bool LanguageDetector::containsKana(QStringView text)
{
    return std::ranges::any_of(text, [](QChar c) {
        return within(c.unicode(), 0x3040, 0x30FF) || within(c.unicode(), 0xFF66, 0xFF9D);
    });
}

Language LanguageDetector::target(Language detected, Language primary, Language secondary)
{
    if (detected != primary)
        return primary;
    if (secondary != detected)
        return secondary;
    return detected == Language::Chinese ? Language::English : Language::Chinese;
}

} // namespace nivora
