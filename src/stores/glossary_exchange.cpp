#include "stores/glossary_exchange.h"

#include "core/csv.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

QStringList headings()
{
    return {u"zh"_s, u"ja"_s};
}

// Spreadsheets copy with tabs. What begins with our own headings has none but in
// its terms.
QChar separatorOf(const QString &text)
{
    const bool isOwn = text.startsWith(csvRecord(headings()).trimmed());
    return !isOwn && text.contains(u'\t') ? u'\t' : u',';
}

} // namespace

QString glossaryToCsv(const std::vector<GlossaryTerm> &terms)
{
    QString csv = csvRecord(headings());
    for (const GlossaryTerm &term : terms)
        csv += csvRecord({term.zh, term.ja});
    return csv;
}

std::vector<GlossaryTerm> glossaryFromText(const QString &text)
{
    std::vector<GlossaryTerm> terms;
    bool isFirst = true;
    for (const QStringList &record : parseCsv(text, separatorOf(text))) {
        const GlossaryTerm term{QUuid::createUuid(), record.value(0), record.value(1)};
        const bool isHeading =
            std::exchange(isFirst, false) && QStringList{term.zh, term.ja} == headings();
        const bool isEmpty = term.zh.trimmed().isEmpty() && term.ja.trimmed().isEmpty();
        if (!isHeading && !isEmpty)
            terms.push_back(term);
    }
    return terms;
}

std::optional<QString> exchangeText(const QByteArray &bytes)
{
    // The decoder drops the mark that it is told of.
    QStringDecoder decoder(
        QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8));
    QString text = decoder(bytes);
    if (decoder.hasError() || text.contains(QChar::Null))
        return std::nullopt;
    return text;
}

} // namespace nivora
