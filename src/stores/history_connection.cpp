#include "history_connection.h"

#include <QFile>

#include <sqlite3.h>

#include <thread>

using namespace std::chrono_literals;

namespace nivora {

namespace {

// SQLite copies what is bound.
const auto TRANSIENT = SQLITE_TRANSIENT;
constexpr auto busyPause = 1ms;
// In steps of SQLite's virtual machine: well below a millisecond of work.
constexpr int interruptPeriod = 1000;

} // namespace

bool isDamage(int result)
{
    const int kind = result & 0xFF;
    return kind == SQLITE_NOTADB || kind == SQLITE_CORRUPT;
}

void SqlStatement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqlStatement &SqlStatement::bind(int index, const QString &text)
{
    if (m_statement)
        sqlite3_bind_text(m_statement.get(), index, text.toUtf8().constData(), -1, TRANSIENT);
    return *this;
}

SqlStatement &SqlStatement::bind(int index, double number)
{
    if (m_statement)
        sqlite3_bind_double(m_statement.get(), index, number);
    return *this;
}

bool SqlStatement::step()
{
    if (m_statement)
        m_result = sqlite3_step(m_statement.get());
    return m_result == SQLITE_ROW;
}

QString SqlStatement::text(int column) const
{
    const auto *bytes = sqlite3_column_text(m_statement.get(), column);
    return QString::fromUtf8(reinterpret_cast<const char *>(bytes));
}

double SqlStatement::real(int column) const
{
    return sqlite3_column_double(m_statement.get(), column);
}

qint64 SqlStatement::integer(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

void HistoryConnection::Close::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

HistoryConnection::HistoryConnection(const QString &path, Access access)
{
    const int flags = SQLITE_OPEN_FULLMUTEX |
                      (access == Access::ReadWrite ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                                                   : SQLITE_OPEN_READONLY);
    sqlite3 *database = nullptr;
    const int result =
        sqlite3_open_v2(QFile::encodeName(path).constData(), &database, flags, nullptr);
    // There is something to close even when opening failed.
    m_database.reset(database);
    if (result != SQLITE_OK)
        m_database.reset();
    else
        sqlite3_busy_handler(m_database.get(), waitForOthers, this);
}

HistoryConnection::~HistoryConnection() = default;

int HistoryConnection::waitForOthers(void *self, int)
{
    if (!static_cast<const HistoryConnection *>(self)->hasPatience())
        return 0;
    std::this_thread::sleep_for(busyPause);
    return 1;
}

void HistoryConnection::setInterrupt(std::function<bool()> interrupted)
{
    m_interrupted = std::move(interrupted);
    sqlite3_progress_handler(m_database.get(), interruptPeriod, askInterrupt, this);
}

int HistoryConnection::askInterrupt(void *self)
{
    return static_cast<const HistoryConnection *>(self)->m_interrupted() ? 1 : 0;
}

SqlStatement HistoryConnection::prepare(const char *sql)
{
    sqlite3_stmt *prepared = nullptr;
    SqlStatement statement;
    statement.m_result = sqlite3_prepare_v2(m_database.get(), sql, -1, &prepared, nullptr);
    statement.m_statement.reset(prepared);
    return statement;
}

int HistoryConnection::exec(const char *sql, QString *message)
{
    char *said = nullptr;
    const int result = sqlite3_exec(m_database.get(), sql, nullptr, nullptr, &said);
    const std::unique_ptr<char, decltype(&sqlite3_free)> owned(said, sqlite3_free);
    if (message && said)
        *message = QString::fromUtf8(said);
    return result;
}

} // namespace nivora
