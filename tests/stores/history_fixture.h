#pragma once

#include "stores/history_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <memory>

namespace nivora::test {

// A second connection, to look at the table and to do to it what others do.
class Sql
{
public:
    explicit Sql(const QString &path)
    {
        sqlite3 *database = nullptr;
        sqlite3_open(QFile::encodeName(path).constData(), &database);
        m_database.reset(database);
        sqlite3_busy_timeout(database, 5000);
    }

    // The columns of all rows, one after the other; "error" and its code where
    // there are none to be had.
    QStringList operator()(const char *sql)
    {
        QStringList values;
        const auto collect = [](void *list, int count, char **columns, char **) {
            for (int i = 0; i < count; ++i)
                *static_cast<QStringList *>(list) << QString::fromUtf8(columns[i]);
            return 0;
        };
        const int result = sqlite3_exec(m_database.get(), sql, collect, &values, nullptr);
        return result == SQLITE_OK ? values : QStringList{QStringLiteral("error %1").arg(result)};
    }

private:
    struct Close
    {
        void operator()(sqlite3 *database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

// A place for one history and the stores that open it one after the other.
struct History
{
    QTemporaryDir folder;
    QString path = folder.path() + QStringLiteral("/Nivora/history.sqlite");
    bool enabled = true;
    std::unique_ptr<HistoryStore> store;

    HistoryStore &open()
    {
        store.reset();
        store = std::make_unique<HistoryStore>([this] { return enabled; }, path);
        return *store;
    }

    qint64 rows() const { return Sql(path)("SELECT COUNT(*) FROM history;").value(0).toLongLong(); }
};

} // namespace nivora::test
