#include "updates/version_number.h"

#include <QCollator>
#include <QVersionNumber>

#include <algorithm>

namespace nivora {

namespace {

constexpr qsizetype maximumLength = 64; // of what is to be shown and compared

struct Parts
{
    QVersionNumber numbers;
    QString suffix; // empty for a release proper
};

Parts partsOf(const QString &text)
{
    QString version = text.trimmed().section(u'+', 0, 0);
    if (version.startsWith(u'v', Qt::CaseInsensitive))
        version.remove(0, 1);
    qsizetype end = 0;
    Parts parts{QVersionNumber::fromString(version, &end), {}};
    parts.suffix = version.mid(end);
    while (!parts.suffix.isEmpty() && !parts.suffix.front().isLetterOrNumber())
        parts.suffix.remove(0, 1);
    return parts;
}

} // namespace

std::weak_ordering compareVersions(const QString &one, const QString &other)
{
    const Parts a = partsOf(one);
    const Parts b = partsOf(other);
    if (const int order = QVersionNumber::compare(a.numbers.normalized(), b.numbers.normalized());
        order != 0)
        return order <=> 0;
    if (a.suffix.isEmpty() || b.suffix.isEmpty())
        return a.suffix.isEmpty() <=> b.suffix.isEmpty();
    QCollator collator(QLocale::English);
    collator.setNumericMode(true); // "rc.10" after "rc.9"
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator.compare(a.suffix, b.suffix) <=> 0;
}

bool isVersionNumber(const QString &text)
{
    return text.size() <= maximumLength &&
           std::ranges::all_of(text, [](QChar each) { return each.isPrint(); }) &&
           !partsOf(text).numbers.isNull();
}

} // namespace nivora
