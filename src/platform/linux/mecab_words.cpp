#include "mecab_words.h"

#include <QList>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

constexpr qsizetype longestPortion = 500;

bool isKana(QChar c)
{
    const char16_t unit = c.unicode();
    return (unit >= 0x3041 && unit <= 0x3096) || (unit >= 0x30A1 && unit <= 0x30FA) ||
           (unit >= 0x30FC && unit <= 0x30FE) || unit == 0x309D || unit == 0x309E;
}

bool isJapanese(QStringView text)
{
    for (const char32_t c : text.toUcs4()) {
        const auto script = QChar::script(c);
        if (script == QChar::Script_Han || script == QChar::Script_Hiragana ||
            script == QChar::Script_Katakana)
            return true;
    }
    return false;
}

// A word in kana is its own reading, whether the dictionary knows it or not.
QString katakanaSpelling(QStringView surface)
{
    QString text = surface.toString().normalized(QString::NormalizationForm_KC);
    if (!std::ranges::all_of(text, isKana))
        return {};
    for (QChar &c : text) {
        const char16_t unit = c.unicode();
        if (unit >= 0x3041 && unit <= 0x309E)
            c = QChar(unit + 0x60);
    }
    return text;
}

// What forms a word of letters, digits and marks, as against an emoji or 。.
bool joinsRun(QChar c)
{
    return c.unicode() < 0x2E80 ? !c.isSpace() : c.isLetterOrNumber();
}

bool isForeignRun(QStringView surface)
{
    return joinsRun(surface.front()) && joinsRun(surface.back()) && !isJapanese(surface);
}

template<std::size_t Count>
std::array<QByteArrayView, Count> fieldsOf(QByteArrayView feature)
{
    std::array<QByteArrayView, Count> fields;
    for (auto &field : fields) {
        const qsizetype comma = feature.indexOf(',');
        field = comma < 0 ? feature : feature.first(comma);
        if (comma < 0)
            feature = {};
        else
            feature = feature.sliced(comma + 1);
    }
    return fields;
}

bool isOneOf(QByteArrayView field, std::initializer_list<QByteArrayView> values)
{
    return std::ranges::find(values, field) != values.end();
}

} // namespace

qsizetype sentenceEnd(QStringView text, qsizetype from)
{
    const qsizetype limit = std::min(text.size(), from + longestPortion);
    for (qsizetype i = from; i < limit; ++i) {
        if (QStringView(u"。！？!?\n").contains(text[i]))
            return i + 1;
    }
    if (limit == text.size())
        return limit;
    // Rather between two words than within one, and never within a character.
    for (qsizetype i = limit; i > from + longestPortion / 2; --i) {
        if (text[i - 1].isSpace() || text[i - 1] == u'、')
            return i;
    }
    return text[limit].isLowSurrogate() ? limit - 1 : limit;
}

void MecabWords::addMorpheme(QStringView surface, QByteArrayView feature)
{
    const auto fields = fieldsOf<9>(feature);
    const Morpheme morpheme{fields[0], fields[1], fields[4], fields[5]};

    platform::JapaneseToken token{surface.toString(), {}, {}};
    // The dictionary reads digits one by one and names marks, as in パーセント.
    if (morpheme.partOfSpeech != "記号" && isJapanese(surface)) {
        token.reading = QString::fromUtf8(fields[7]);
        token.pronunciation = QString::fromUtf8(fields[8]);
        if (!std::ranges::any_of(token.reading, isKana))
            token.reading = katakanaSpelling(surface);
        if (token.pronunciation.isEmpty() || token.reading.isEmpty())
            token.pronunciation = token.reading;
    }

    const bool isForeign = token.reading.isEmpty() && isForeignRun(surface);
    const bool joins = isForeign ? m_last == Last::Foreign
                                 : !token.reading.isEmpty() && belongsToTheLast(morpheme, surface);
    m_last = isForeign ? Last::Foreign : kindOf(morpheme, token.reading);
    if (!joins)
        return m_tokens.push_back(std::move(token));
    platform::JapaneseToken &word = m_tokens.back();
    word.surface += token.surface;
    word.reading += token.reading;
    word.pronunciation += token.pronunciation;
}

void MecabWords::addBlanks(QStringView blanks)
{
    if (blanks.isEmpty())
        return;
    // A run that a sentence's end cut in two is still one run.
    if (!m_tokens.empty() && m_tokens.back().surface.back().isSpace())
        m_tokens.back().surface += blanks;
    else
        m_tokens.push_back({blanks.toString(), {}, {}});
    m_last = Last::None;
}

bool MecabWords::belongsToTheLast(const Morpheme &morpheme, QStringView surface) const
{
    switch (m_last) {
    case Last::None:
    case Last::Foreign:
    case Last::Other:
        return false;
    case Last::Prefix:
    case Last::Unfinished:
        return true;
    case Last::Inflected:
        break;
    }
    // Endings, but not です and だ, which learners know as words.
    if (morpheme.partOfSpeech == "助動詞") {
        return isOneOf(morpheme.conjugation, {"特殊・タ", "特殊・マス", "特殊・ナイ", "特殊・タイ",
                                              "特殊・ヌ", "不変化型"});
    }
    if (morpheme.partOfSpeech == "助詞")
        return morpheme.detail == "接続助詞" &&
               (surface == u"て" || surface == u"で" || surface == u"ば");
    return morpheme.partOfSpeech == "動詞" && morpheme.detail == "接尾";
}

MecabWords::Last MecabWords::kindOf(const Morpheme &morpheme, QStringView reading)
{
    if (reading.isEmpty())
        return Last::None;
    // っ is said with the consonant that follows; 連用タ接続 stands only before
    // た, て and their like.
    if (reading.endsWith(u'ッ') || morpheme.form == "連用タ接続")
        return Last::Unfinished;
    if (morpheme.partOfSpeech == "接頭詞")
        return Last::Prefix;
    if (isOneOf(morpheme.partOfSpeech, {"動詞", "形容詞", "助動詞"}))
        return Last::Inflected;
    return Last::Other;
}

} // namespace nivora::linuxdesktop
