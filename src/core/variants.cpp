#include "core/translation_engine.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Blanks without line breaks: what stands around a phrasing, not between two.
bool isBlank(QChar c)
{
    return c == u'\t' || c.category() == QChar::Separator_Space;
}

bool isBulletOrBlank(QChar c)
{
    return isBlank(c) || QStringView(u"・-*•").contains(c);
}

template<typename Predicate>
QStringView trimmed(QStringView text, Predicate isDropped)
{
    const auto begin = std::find_if_not(text.begin(), text.end(), isDropped);
    const auto end =
        std::find_if_not(text.rbegin(), std::reverse_iterator(begin), isDropped).base();
    return {begin, end};
}

// CR LF is one character to a reader, and no line feed.
qsizetype lineEnd(QStringView text, qsizetype from)
{
    qsizetype at = text.indexOf(u'\n', from);
    while (at > 0 && text[at - 1] == u'\r')
        at = text.indexOf(u'\n', at + 1);
    return at < 0 ? text.size() : at;
}

} // namespace

QStringList TranslationEngine::parseVariants(const QString &answer, int max)
{
    static const QRegularExpression number(u"^\\s*\\d+\\s*[.、)）．：:]\\s*"_s,
                                           QRegularExpression::UseUnicodePropertiesOption);
    QStringList kept;
    for (qsizetype begin = 0; begin < answer.size();) {
        const qsizetype end = lineEnd(answer, begin);
        const QStringView line = QStringView(answer).sliced(begin, end - begin);
        begin = end + 1;
        QStringView phrasing = trimmed(line, isBlank);
        if (const auto match = number.match(phrasing); match.hasMatch())
            phrasing = phrasing.sliced(match.capturedLength());
        phrasing = trimmed(phrasing, isBulletOrBlank);
        if (phrasing.isEmpty() || kept.contains(phrasing))
            continue;
        kept.append(phrasing.toString());
        if (kept.size() >= max)
            break;
    }
    return kept;
}

} // namespace nivora
