#pragma once

#include "platform/japanese_tokenizer.h"

#include <QByteArrayView>

namespace nivora::linuxdesktop {

// Where the portion of `text` that begins at `from` ends: behind the first end of
// a sentence, or behind 500 UTF-16 units where none is nearer. The analyser's cost
// grows with the portion, and it gives up on a single word of 64 KiB.
qsizetype sentenceEnd(QStringView text, qsizetype from);

// Puts words together from what the analyser calls morphemes. It cuts finer than
// a reader does: 送っ|て, 食べ|まし|た. Endings go to their word, a prefix goes to
// what it precedes, and a run of Latin letters, digits and marks stays whole.
class MecabWords
{
public:
    // `feature` as in the IPA dictionary: comma-separated, with the reading in
    // field 7 and the pronunciation in field 8, both missing for unknown words.
    void addMorpheme(QStringView surface, QByteArrayView feature);

    // What lies between two morphemes.
    void addBlanks(QStringView blanks);

    std::vector<platform::JapaneseToken> take() { return std::move(m_tokens); }

private:
    struct Morpheme
    {
        QByteArrayView partOfSpeech; // 動詞
        QByteArrayView detail;       // 自立
        QByteArrayView conjugation;  // 五段・カ行促音便
        QByteArrayView form;         // 連用タ接続
    };
    enum class Last { None, Foreign, Prefix, Inflected, Unfinished, Other };

    bool belongsToTheLast(const Morpheme &morpheme, QStringView surface) const;
    static Last kindOf(const Morpheme &morpheme, QStringView reading);

    std::vector<platform::JapaneseToken> m_tokens;
    Last m_last = Last::None; // the last morpheme of the last token
};

} // namespace nivora::linuxdesktop
