#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace nivora::platform {

// A word, a punctuation mark or a run of blanks.
struct JapaneseToken
{
    QString surface; // as in the text, never empty
    // How the word is spelt in katakana. Empty for what Japanese has no reading
    // for: Latin words, digits, marks, blanks, emoji, unknown ideographs.
    QString reading;
    // How it is said: ワ for the particle は, and ー for a vowel drawn out.
    // Empty together with the reading.
    QString pronunciation;

    bool operator==(const JapaneseToken &) const = default;
};

// Cuts Japanese into words and knows how they are read. Every call may come from
// any thread, and several at once.
class JapaneseTokenizer
{
public:
    virtual ~JapaneseTokenizer() = default;

    // Loads what tokenize() needs, and does nothing the second time. May take
    // seconds when the dictionary has to come from a slow disk, so it is no call
    // for the main thread. False when there is no dictionary.
    virtual bool prepare() = 0;

    // The surfaces together are the text, of any length. Absent when there is no
    // dictionary, or once `goesOn`, asked between sentences, says false. Prepares
    // where that was not done.
    virtual std::optional<std::vector<JapaneseToken>>
    tokenize(const QString &text, const std::function<bool()> &goesOn) = 0;
};

} // namespace nivora::platform
