#include "core/translation_options.h"

#include <bitset>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// A quick test that rules out nearly every term of a large glossary without a
// search: which characters, and which pairs of neighbours, occur in the text.
// A pair is hashed, so a positive answer still needs the search.
class Occurrences
{
public:
    explicit Occurrences(QStringView text)
    {
        for (qsizetype i = 0; i < text.size(); ++i) {
            m_units.set(text[i].unicode());
            if (i + 1 < text.size())
                m_pairs.set(hash(text[i], text[i + 1]));
        }
    }

    bool mayContain(QStringView term) const
    {
        if (term.size() == 1)
            return m_units.test(term[0].unicode());
        for (qsizetype i = 0; i + 1 < term.size(); ++i) {
            if (!m_pairs.test(hash(term[i], term[i + 1])))
                return false;
        }
        return true;
    }

private:
    static std::size_t hash(QChar first, QChar second)
    {
        const quint32 pair = quint32(first.unicode()) << 16 | second.unicode();
        return (pair * 2654435761u) >> 14; // Knuth's multiplicative hash, 18 bits
    }

    std::bitset<1 << 16> m_units;
    std::bitset<1 << 18> m_pairs;
};

} // namespace

std::vector<TermPair> TranslationOptions::matchedTerms(const QString &source, Language target) const
{
    std::vector<TermPair> pairs;
    const bool intoChinese = target == Language::Chinese;
    if (glossary.empty() || (!intoChinese && target != Language::Japanese))
        return pairs;

    const auto occurrences = std::make_unique<Occurrences>(source);
    for (const GlossaryTerm &term : glossary) {
        if (term.zh.isEmpty() || term.ja.isEmpty())
            continue;
        const QString &from = intoChinese ? term.ja : term.zh;
        const QString &to = intoChinese ? term.zh : term.ja;
        if (occurrences->mayContain(from) && source.contains(from))
            pairs.emplace_back(from, to);
    }
    return pairs;
}

QString renderTerms(const std::vector<TermPair> &terms)
{
    QStringList rendered;
    rendered.reserve(qsizetype(terms.size()));
    for (const auto &[from, to] : terms)
        rendered << from + u'→' + to;
    return rendered.join(u'，');
}

} // namespace nivora
