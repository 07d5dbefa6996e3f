#pragma once

#include "stores/history_store.h"

#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

namespace nivora::bench {

// Adds `rows` sentences to a history that the store has made.
inline void fillHistory(const QString &path, qint64 rows)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &database);
    const QByteArray fill =
        "PRAGMA synchronous=OFF; BEGIN;"
        "WITH RECURSIVE c(x) AS (SELECT 0 UNION ALL SELECT x+1 FROM c WHERE x+1<" +
        QByteArray::number(rows) +
        ") INSERT INTO history SELECT "
        "printf('%08X-0000-4000-8000-%012X',(x*2654435761)%4294967296,x),1600000000+x*0.1,"
        "'我们明天上午十点在会议室讨论第'||x||'季度的预算安排，请准时参加。',"
        "'明日の午前10時に会議室で第'||x||'四半期の予算について話し合います。ご参加ください。',"
        "'chinese','japanese' FROM c; COMMIT;";
    sqlite3_exec(database, fill.constData(), nullptr, nullptr, nullptr);
    sqlite3_close(database);
}

// A history of `rows` sentences, made anew for each program run.
class LongHistory
{
public:
    explicit LongHistory(qint64 rows)
        : m_path(m_folder.path() + QStringLiteral("/Nivora/history.sqlite"))
        , m_store([] { return true; }, m_path)
    {
        fillHistory(m_path, rows);
    }

    HistoryStore &store() { return m_store; }
    const QString &path() const { return m_path; }

private:
    QTemporaryDir m_folder;
    QString m_path;
    HistoryStore m_store;
};

} // namespace nivora::bench
