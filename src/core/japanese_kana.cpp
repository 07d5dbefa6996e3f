#include "core/japanese_kana.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr char16_t firstKana = u'ぁ';
constexpr char16_t lastKana = u'ゖ';
constexpr int katakanaOffset = u'ァ' - u'ぁ';

constexpr char16_t smallTsu = u'っ';
constexpr char16_t longMark = u'ー';
constexpr char16_t repeatMark = u'ゝ';
constexpr char16_t voicedRepeatMark = u'ゞ';

// Every kana by itself, from ぁ to ゖ. っ has no sound of its own.
constexpr auto syllables = std::to_array<QLatin1StringView>({
    "a"_L1,  "a"_L1,  "i"_L1,   "i"_L1,  "u"_L1,  "u"_L1,   "e"_L1,  "e"_L1,  "o"_L1,  "o"_L1, //
    "ka"_L1, "ga"_L1, "ki"_L1,  "gi"_L1, "ku"_L1, "gu"_L1,  "ke"_L1, "ge"_L1, "ko"_L1, "go"_L1,
    "sa"_L1, "za"_L1, "shi"_L1, "ji"_L1, "su"_L1, "zu"_L1,  "se"_L1, "ze"_L1, "so"_L1, "zo"_L1,
    "ta"_L1, "da"_L1, "chi"_L1, "ji"_L1, ""_L1,   "tsu"_L1, "zu"_L1, "te"_L1, "de"_L1, "to"_L1,
    "do"_L1,                                      //
    "na"_L1, "ni"_L1, "nu"_L1,  "ne"_L1, "no"_L1, //
    "ha"_L1, "ba"_L1, "pa"_L1,  "hi"_L1, "bi"_L1, "pi"_L1,  "fu"_L1, "bu"_L1, "pu"_L1, "he"_L1,
    "be"_L1, "pe"_L1, "ho"_L1,  "bo"_L1, "po"_L1,          //
    "ma"_L1, "mi"_L1, "mu"_L1,  "me"_L1, "mo"_L1,          //
    "ya"_L1, "ya"_L1, "yu"_L1,  "yu"_L1, "yo"_L1, "yo"_L1, //
    "ra"_L1, "ri"_L1, "ru"_L1,  "re"_L1, "ro"_L1,          //
    "wa"_L1, "wa"_L1, "i"_L1,   "e"_L1,  "o"_L1,  "n"_L1,   "vu"_L1, "ka"_L1, "ke"_L1,
});
static_assert(syllables.size() == lastKana - firstKana + 1);

bool isSyllable(QChar c)
{
    return c.unicode() >= firstKana && c.unicode() <= lastKana;
}

QLatin1StringView syllable(QChar c)
{
    return syllables[std::size_t(c.unicode() - firstKana)];
}

bool isVowel(QChar c)
{
    return QStringView(u"aiueo").contains(c);
}

// The sound of a kana with a small one behind it, as in きょ or ファ; empty for
// two that do not make one syllable.
QString combined(QChar kana, QChar small)
{
    if (!QStringView(u"ぁぃぅぇぉゃゅょゎ").contains(small))
        return {};
    const QLatin1StringView whole = syllable(kana);
    if (whole.size() == 0 || QStringView(u"ぁぃぅぇぉっゃゅょゎん").contains(kana))
        return {};
    const QString stem = whole.chopped(1);
    const QChar ending = whole.back();
    const QChar vowel = syllable(small).back();
    const auto isIn = [&](QStringView kanas) { return kanas.contains(kana); };
    const QString glide = isIn(u"しじちぢ") ? QString() : u"y"_s;

    if (QStringView(u"ゃゅょ").contains(small)) {
        if (ending == u'i' && !stem.isEmpty())
            return stem + glide + vowel;
        return isIn(u"てでふゔ") ? stem + u'y' + vowel : QString();
    }
    if (ending == u'i' && vowel == u'e')
        return stem + glide + vowel;
    if (vowel != u'u' && isIn(u"う"))
        return u"w"_s + vowel;
    if (vowel != u'u' && isIn(u"つふゔ"))
        return stem + vowel;
    if (vowel != u'u' && isIn(u"くぐ"))
        return stem + u'w' + vowel;
    const bool other = (vowel == u'i' && isIn(u"てですず")) || (vowel == u'u' && isIn(u"とど"));
    return other ? stem + vowel : QString();
}

// Writes the sounds one after the other, with what each does to its neighbours.
class Romaji
{
public:
    void add(const QString &sound)
    {
        if (m_doubles) {
            if (isVowel(sound.front()))
                m_text += u'\'';
            else
                m_text += sound.startsWith("ch"_L1) ? QChar(u't') : sound.front();
        } else if (m_afterN && (isVowel(sound.front()) || sound.front() == u'y')) {
            m_text += u'\'';
        }
        m_text += sound;
        m_doubles = false;
        m_afterN = sound == u"n";
    }

    void doubleNext()
    {
        endDoubling();
        m_doubles = true;
    }

    void lengthen()
    {
        endDoubling();
        constexpr QStringView vowels = u"aiueo";
        constexpr QStringView longVowels = u"āīūēō";
        const auto index = m_text.isEmpty() ? -1 : vowels.indexOf(m_text.back());
        if (index < 0)
            m_text += u'-';
        else
            m_text.back() = longVowels[index];
        m_afterN = false;
    }

    void addForeign(QChar c)
    {
        endDoubling();
        m_text += c;
        m_afterN = false;
    }

    QString take()
    {
        endDoubling();
        return std::move(m_text);
    }

private:
    void endDoubling()
    {
        if (std::exchange(m_doubles, false))
            m_text += u'\'';
    }

    QString m_text;
    bool m_doubles = false; // after っ
    bool m_afterN = false;  // after ん
};

// ゝ and ゞ spelt out.
QString withoutRepeatMarks(QString hiragana)
{
    for (qsizetype i = 1; i < hiragana.size(); ++i) {
        const QChar mark = hiragana[i];
        if (!isSyllable(hiragana[i - 1]) || (mark != repeatMark && mark != voicedRepeatMark))
            continue;
        hiragana[i] = hiragana[i - 1];
        // The mark for the voice, put behind, melts into the letter where it can.
        if (mark == voicedRepeatMark) {
            const QString voiced = QString(QString(hiragana[i]) + QChar(0x3099))
                                       .normalized(QString::NormalizationForm_C);
            hiragana[i] = voiced.front();
        }
    }
    return hiragana;
}

} // namespace

QString hiraganaFromKatakana(QStringView katakana)
{
    QString text = katakana.toString();
    for (QChar &c : text) {
        const char16_t base = char16_t(c.unicode() - katakanaOffset);
        if ((base >= firstKana && base <= lastKana) || base == repeatMark ||
            base == voicedRepeatMark)
            c = base;
    }
    return text;
}

QString romajiFromKana(QStringView kana)
{
    const QString text = withoutRepeatMarks(hiraganaFromKatakana(kana));
    Romaji romaji;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == longMark) {
            romaji.lengthen();
        } else if (!isSyllable(c)) {
            romaji.addForeign(c);
        } else if (c == smallTsu) {
            romaji.doubleNext();
        } else if (const QString pair = i + 1 < text.size() ? combined(c, text[i + 1]) : QString();
                   !pair.isEmpty()) {
            romaji.add(pair);
            ++i;
        } else {
            romaji.add(syllable(c));
        }
    }
    return romaji.take();
}

} // namespace nivora
