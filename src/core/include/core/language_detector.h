#pragma once

#include "core/language.h"
#include "core/language_recognizer.h"

#include <QStringView>

namespace nivora {

// The local, offline decision on the language of a text. Pure, any thread; it
// always answers, and never with Auto, Romaji or Hiragana.
class LanguageDetector
{
public:
    LanguageDetector() = delete;

    // Asks the recognizer only when the scripts of the text do not decide.
    static Language detect(QStringView text);

    // The same decision with the recognizer's verdict given.
    static Language detect(QStringView text, std::optional<RecognizedLanguage> verdict);

    // Whether any hiragana or katakana, full or half width, occurs.
    static bool containsKana(QStringView text);

    // The direction rule: a foreign text goes into the user's primary language,
    // a text in that language goes out of it into the secondary one.
    static Language target(Language detected, Language primary, Language secondary);
};

} // namespace nivora
