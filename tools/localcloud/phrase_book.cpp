#include "localcloud/phrase_book.h"

#include "phrases.h"

#include <array>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

struct TongueEntry
{
    Tongue tongue;
    QLatin1StringView wireName;
    QStringView chineseName;
    QStringView notFound;
    QStringView Phrase::*column;
};

constexpr std::array tongues{
    TongueEntry{Tongue::Chinese, "chinese"_L1, u"中文", u"（短语手册中没有这句话）",
                &Phrase::chinese},
    TongueEntry{Tongue::TraditionalChinese, "traditionalChinese"_L1, u"繁体中文",
                u"（短語手冊中沒有這句話）", &Phrase::traditionalChinese},
    TongueEntry{Tongue::Cantonese, "cantonese"_L1, u"粤语", u"（短語手冊入面冇呢句說話）",
                &Phrase::cantonese},
    TongueEntry{Tongue::Japanese, "japanese"_L1, u"日语", u"（この文はフレーズ集にありません）",
                &Phrase::japanese},
    TongueEntry{Tongue::Romaji, "romaji"_L1, u"罗马字", u"(kono bun wa furēzushū ni arimasen)",
                &Phrase::romaji},
    TongueEntry{Tongue::Korean, "korean"_L1, u"韩语", u"(회화집에 없는 문장입니다)",
                &Phrase::korean},
    TongueEntry{Tongue::English, "english"_L1, u"英语",
                u"(This sentence is not in the phrase book.)", &Phrase::english},
};

const TongueEntry &entry(Tongue tongue)
{
    for (const TongueEntry &each : tongues) {
        if (each.tongue == tongue)
            return each;
    }
    Q_UNREACHABLE();
}

QString folded(QStringView text)
{
    // Compatibility form: a full-width "！" is "!" then.
    QString key =
        text.trimmed().toString().normalized(QString::NormalizationForm_KC).toCaseFolded();
    key.replace(u'’', u'\'');
    qsizetype length = key.size();
    while (length > 0 && u".。!?…~、, "_s.contains(key.at(length - 1)))
        --length;
    key.truncate(length);
    return key;
}

} // namespace

std::optional<Tongue> tongueOfWireName(const QString &name)
{
    for (const TongueEntry &each : tongues) {
        if (each.wireName == name)
            return each.tongue;
    }
    return std::nullopt;
}

QString chineseName(Tongue tongue)
{
    return entry(tongue).chineseName.toString();
}

PhraseBook::PhraseBook()
{
    int row = 0;
    for (const Phrase &phrase : phrases()) {
        for (const TongueEntry &each : tongues)
            m_rows.insert(folded(phrase.*each.column), row);
        m_rows.insert(folded(phrase.familiarJapanese), row);
        m_rows.insert(folded(phrase.formalJapanese), row);
        ++row;
    }
}

std::optional<QString> PhraseBook::lookUp(const QString &text, Tongue target) const
{
    const auto row = m_rows.constFind(folded(text));
    if (row == m_rows.constEnd())
        return std::nullopt;
    return (phrases()[*row].*entry(target).column).toString();
}

QStringList PhraseBook::variants(const QString &text, Tongue target, int count) const
{
    const auto row = m_rows.constFind(folded(text));
    if (row == m_rows.constEnd())
        return {};
    const Phrase &phrase = phrases()[*row];
    QStringList all{(phrase.*entry(target).column).toString()};
    if (target == Tongue::Japanese)
        all += {phrase.familiarJapanese.toString(), phrase.formalJapanese.toString()};
    return all.first(qBound(0, count, all.size()));
}

QString PhraseBook::notFound(Tongue target)
{
    return entry(target).notFound.toString();
}

} // namespace nivora::localcloud
