#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QUuid>

namespace nivora {

// One finished translation as the history shows it.
struct HistoryEntry
{
    QUuid id;
    QDateTime date; // UTC
    QString sourceText;
    QString translation;
    QString from; // raw values of Language, as stored
    QString to;

    bool operator==(const HistoryEntry &) const = default;

    friend size_t qHash(const HistoryEntry &entry, size_t seed = 0)
    {
        return qHashMulti(seed, entry.id, entry.date, entry.sourceText, entry.translation,
                          entry.from, entry.to);
    }
};

} // namespace nivora
