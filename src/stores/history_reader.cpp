#include "history_reader.h"

#include "history_connection.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto readPatience = 1s;
// Of the texts, together: 64 MiB in memory. Two thousand entries of usual length
// have a hundredth of it.
constexpr qsizetype mostCharacters = 32 * 1024 * 1024;
constexpr char countRows[] = "SELECT COUNT(*) FROM history;";
constexpr char listFound[] = "SELECT id,ts,source,translation,from_lang,to_lang FROM history "
                             "WHERE source LIKE ?1 OR translation LIKE ?1 ORDER BY ts DESC LIMIT ";
constexpr char listAll[] = "SELECT id,ts,source,translation,from_lang,to_lang FROM history "
                           "ORDER BY ts DESC LIMIT ";

QUuid idFrom(const QString &text)
{
    const QUuid id(text);
    // Such a row shows, but it cannot be named for its removal.
    return id.isNull() ? QUuid::createUuid() : id;
}

HistoryEntry entryFrom(const SqlStatement &row)
{
    const qint64 milliseconds = std::llround(row.real(1) * 1000);
    return {idFrom(row.text(0)), QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC),
            row.text(2),         row.text(3),
            row.text(4),         row.text(5)};
}

} // namespace

HistoryList readHistory(const QString &path, const QString &search, int limit,
                        std::function<bool()> interrupted)
{
    HistoryList list;
    HistoryConnection database(path, HistoryConnection::Access::ReadOnly);
    if (!database.isOpen())
        return list;
    database.setPatience(readPatience);
    database.setInterrupt(std::move(interrupted));

    SqlStatement count = database.prepare(countRows);
    if (count.step())
        list.total = count.integer(0);
    list.isDamaged = isDamage(count.result());

    const QByteArray sql =
        (search.isEmpty() ? listAll : listFound) + QByteArray::number(limit) + ';';
    SqlStatement rows = database.prepare(sql.constData());
    list.isDamaged |= isDamage(rows.result());
    if (!rows)
        return list;
    if (!search.isEmpty())
        rows.bind(1, u'%' + search + u'%');
    list.entries.emplace();
    for (qsizetype characters = 0; characters < mostCharacters && rows.step();) {
        const HistoryEntry &entry = list.entries->emplace_back(entryFrom(rows));
        characters += entry.sourceText.size() + entry.translation.size();
    }
    list.isDamaged |= isDamage(rows.result());
    return list;
}

} // namespace nivora
