#pragma once

#include <QFile>
#include <QString>

#include <sqlite3.h>

#include <functional>
#include <memory>

namespace nivora::bench {

// The product's history, read by another process while it is written.
class SoakHistory
{
public:
    explicit SoakHistory(const QString &path)
    {
        sqlite3 *database = nullptr;
        sqlite3_open_v2(QFile::encodeName(path).constData(), &database, SQLITE_OPEN_READONLY,
                        nullptr);
        m_database.reset(database);
        sqlite3_busy_timeout(database, 1000);
        m_ofSource = prepare("SELECT count(*) FROM history WHERE source=?;");
    }

    int rowsOf(const QString &source) const
    {
        const QByteArray key = source.toUtf8();
        sqlite3_bind_text(m_ofSource.get(), 1, key.constData(), int(key.size()), SQLITE_STATIC);
        const int rows = sqlite3_step(m_ofSource.get()) == SQLITE_ROW
                             ? sqlite3_column_int(m_ofSource.get(), 0)
                             : 0;
        sqlite3_reset(m_ofSource.get()); // lets go of the snapshot
        return rows;
    }

    // Every source that has a row, with the number of its rows and one translation.
    void forEach(const std::function<void(const QString &, int, const QString &)> &visit) const
    {
        const auto all =
            prepare("SELECT source, count(*), min(translation) FROM history GROUP BY source;");
        const auto text = [&](int column) {
            return QString::fromUtf8(
                reinterpret_cast<const char *>(sqlite3_column_text(all.get(), column)));
        };
        while (sqlite3_step(all.get()) == SQLITE_ROW)
            visit(text(0), sqlite3_column_int(all.get(), 1), text(2));
    }

private:
    struct Close
    {
        void operator()(sqlite3 *database) const { sqlite3_close_v2(database); }
        void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Close>;

    Statement prepare(const char *sql) const
    {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(m_database.get(), sql, -1, &statement, nullptr);
        return Statement(statement);
    }

    std::unique_ptr<sqlite3, Close> m_database;
    Statement m_ofSource;
};

} // namespace nivora::bench
