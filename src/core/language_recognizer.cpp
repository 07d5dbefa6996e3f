#include "core/language_recognizer.h"

#include "core/han_variants.h"

#include "platform/log.h"

#include <QLibrary>
#include <QString>

// CLD2's header uses FILE without including it.
#include <cstdio>

#include <cld2/public/compact_lang_det.h>

namespace nivora {

namespace {

constexpr qsizetype examinedUnits = 32'768;

// CLD2 is loaded with the first text that asks for its verdict: a program at rest does
// not carry its tables. Its interface is C++, so the name is the linker's for
// CLD2::ExtDetectLanguageSummaryCheckUTF8.
using Summarise = decltype(&CLD2::ExtDetectLanguageSummaryCheckUTF8);
constexpr int libraryVersion = 0;
constexpr char summariseName[] =
    "_ZN4CLD233ExtDetectLanguageSummaryCheckUTF8EPKcibPKNS_8CLDHintsEiPNS_8LanguageEPiPdPSt6vector"
    "INS_11ResultChunkESaISA_EES7_PbS7_";

Summarise loadSummarise()
{
    QLibrary library(QStringLiteral("cld2"), libraryVersion);
    const auto found = reinterpret_cast<Summarise>(library.resolve(summariseName));
    if (!found)
        qCWarning(log::app).noquote()
            << "Languages are told by their script alone:" << library.errorString();
    return found;
}

// Positive for traditional, negative for simplified. `seen` tells whether any
// character speaks for either.
int scriptBalance(QStringView text, bool &seen)
{
    int balance = 0;
    seen = false;
    for (const QChar c : text) {
        switch (hanVariant(c.unicode())) {
        case HanVariant::TraditionalOnly:
            ++balance;
            seen = true;
            break;
        case HanVariant::SimplifiedOnly:
            --balance;
            seen = true;
            break;
        case HanVariant::Shared:
            break;
        }
    }
    return balance;
}

bool isHan(QChar c)
{
    return (c.unicode() >= 0x3400 && c.unicode() <= 0x4DBF) ||
           (c.unicode() >= 0x4E00 && c.unicode() <= 0x9FFF) ||
           (c.unicode() >= 0xF900 && c.unicode() <= 0xFAFF);
}

std::optional<RecognizedLanguage> statisticalVerdict(QStringView text)
{
    static const Summarise summarise = loadSummarise();
    if (!summarise)
        return std::nullopt;
    const QByteArray utf8 = text.toUtf8();
    CLD2::Language ranked[3] = {};
    int percent[3] = {};
    double score[3] = {};
    int textBytes = 0;
    int validBytes = 0;
    bool reliable = false;
    const CLD2::Language found =
        summarise(utf8.constData(), static_cast<int>(utf8.size()), /*is_plain_text=*/true, nullptr,
                  CLD2::kCLDFlagBestEffort, ranked, percent, score, nullptr, &textBytes, &reliable,
                  &validBytes);
    switch (found) {
    case CLD2::CHINESE:
        return RecognizedLanguage::SimplifiedChinese;
    case CLD2::CHINESE_T:
        return RecognizedLanguage::TraditionalChinese;
    case CLD2::JAPANESE:
        return RecognizedLanguage::Japanese;
    case CLD2::KOREAN:
        return RecognizedLanguage::Korean;
    case CLD2::ENGLISH:
        return RecognizedLanguage::English;
    case CLD2::UNKNOWN_LANGUAGE:
    case CLD2::TG_UNKNOWN_LANGUAGE:
        return std::nullopt;
    default:
        return RecognizedLanguage::Other;
    }
}

} // namespace

std::optional<RecognizedLanguage> recognizeLanguage(QStringView text)
{
    text = text.first(std::min(text.size(), examinedUnits));
    bool seen = false;
    const int balance = scriptBalance(text, seen);
    if (balance > 0)
        return RecognizedLanguage::TraditionalChinese;
    if (balance < 0)
        return RecognizedLanguage::SimplifiedChinese;

    const auto verdict = statisticalVerdict(text);
    // Ideographs that both scripts share are no ground for "traditional".
    if (!seen && verdict == RecognizedLanguage::TraditionalChinese &&
        std::ranges::any_of(text, isHan))
        return RecognizedLanguage::SimplifiedChinese;
    return verdict;
}

} // namespace nivora
