#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace nivora {

// Whether a result code of SQLite's says that the file itself is damaged, or is
// no database at all.
bool isDamage(int result);

// One prepared statement. False when it could not be prepared; it then has no
// rows and takes bindings in silence.
class SqlStatement
{
public:
    explicit operator bool() const { return m_statement != nullptr; }

    // Indices count from 1. Text ends at its first NUL.
    SqlStatement &bind(int index, const QString &text);
    SqlStatement &bind(int index, double number);

    // True while there is a row.
    bool step();
    // SQLite's code for the last step or, before the first, for the preparation.
    int result() const { return m_result; }

    // Columns of that row, counted from 0. NULL is an empty text.
    QString text(int column) const;
    double real(int column) const;
    qint64 integer(int column) const;

private:
    friend class HistoryConnection;
    struct Finalize
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    int m_result = 0;
};

// One connection to a database file. Used by one thread at a time.
class HistoryConnection
{
public:
    enum class Access { ReadOnly, ReadWrite };

    HistoryConnection(const QString &path, Access access);
    HistoryConnection(const HistoryConnection &) = delete;
    HistoryConnection &operator=(const HistoryConnection &) = delete;
    ~HistoryConnection();

    bool isOpen() const { return m_database != nullptr; }

    // How long what follows may wait, altogether, for another process.
    void setPatience(std::chrono::milliseconds patience) { m_patience.setRemainingTime(patience); }
    bool hasPatience() const { return !m_patience.hasExpired(); }

    // A statement ends without a further row soon after this first gives true.
    void setInterrupt(std::function<bool()> interrupted);

    SqlStatement prepare(const char *sql);
    // SQLite's result code, 0 for success; `message` is set where SQLite has one.
    int exec(const char *sql, QString *message = nullptr);

private:
    static int waitForOthers(void *self, int attempt);
    static int askInterrupt(void *self);

    struct Close
    {
        void operator()(sqlite3 *database) const;
    };

    QDeadlineTimer m_patience;
    std::function<bool()> m_interrupted;
    std::unique_ptr<sqlite3, Close> m_database;
};

} // namespace nivora
