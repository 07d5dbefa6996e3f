#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace nivora::localcloud {

enum class Tongue {
    Chinese,
    TraditionalChinese,
    Cantonese,
    Japanese,
    Romaji, // Japanese in Latin letters
    Korean,
    English,
};

// The language of a wire name, "traditionalChinese" or "romaji".
std::optional<Tongue> tongueOfWireName(const QString &name);
// The Chinese word for it, as prompts for language models use it.
QString chineseName(Tongue tongue);

// About fifty everyday sentences in all of the languages above.
class PhraseBook
{
public:
    PhraseBook();

    // The sentence in the target language. The text may be in any language of
    // the book; blanks around it, its final punctuation, letter case and
    // full-width spelling do not matter. Absent when it is not in the book.
    std::optional<QString> lookUp(const QString &text, Tongue target) const;

    // At most `count` ways to say it, from the usual one on: the book has three
    // for Japanese and one for every other language. Empty when the text is not
    // in the book.
    QStringList variants(const QString &text, Tongue target, int count) const;

    // One line in the target language that says that a text is not in the book.
    static QString notFound(Tongue target);

private:
    QHash<QString, int> m_rows; // by the folded sentence
};

} // namespace nivora::localcloud
