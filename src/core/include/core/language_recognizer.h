#pragma once

#include <QStringView>

#include <optional>

namespace nivora {

// A statistical verdict on a text, as far as the program tells languages apart.
enum class RecognizedLanguage {
    SimplifiedChinese,
    TraditionalChinese,
    Japanese,
    Korean,
    English,
    Other,
};

// The dominant language, absent when the text gives no ground for a verdict.
// Local, no network. Looks at the first 32,768 UTF-16 units at most.
//
// Han text is judged by characters that only one of the two Chinese scripts
// has, since the statistical model mistakes short simplified texts for
// traditional ones; everything else is judged by CLD2.
std::optional<RecognizedLanguage> recognizeLanguage(QStringView text);

} // namespace nivora
