#include "history_database.h"

#include "history_connection.h"

#include "platform/log.h"

#include <QFileInfo>

#include <sqlite3.h>

#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// All that one call may wait for another process.
constexpr auto patience = 1000ms;
constexpr auto schemaPause = 1ms;

constexpr const char *schema[] = {
    "PRAGMA journal_mode=WAL;",
    "CREATE TABLE IF NOT EXISTS history(\n"
    "  id TEXT PRIMARY KEY, ts REAL NOT NULL,\n"
    "  source TEXT NOT NULL, translation TEXT NOT NULL,\n"
    "  from_lang TEXT NOT NULL, to_lang TEXT NOT NULL);",
    "CREATE INDEX IF NOT EXISTS idx_history_lookup ON history(source, to_lang);",
    "CREATE INDEX IF NOT EXISTS idx_history_ts ON history(ts);",
};
constexpr char newestTranslation[] =
    "SELECT translation FROM history WHERE source=? AND to_lang=? ORDER BY ts DESC LIMIT 1;";
constexpr char insertRow[] = "INSERT INTO history(id,ts,source,translation,from_lang,to_lang) "
                             "VALUES(?,?,?,?,?,?);";
constexpr char deleteRow[] = "DELETE FROM history WHERE id=?;";
constexpr char deleteAll[] = "DELETE FROM history;";

// The kinds of failure lie in the lowest byte.
constexpr int kind(int result)
{
    return result & 0xFF;
}

QString canonical(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

constexpr QStringView notOpened = u"history: 打开 SQLite 失败";

} // namespace

HistoryDatabase::HistoryDatabase(QString path)
    : m_path(std::move(path))
    , m_file(m_path)
{
}

HistoryDatabase::~HistoryDatabase() = default;

void HistoryDatabase::open()
{
    m_connection.reset();
    // Once more with a new file, where the old one was none of SQLite's.
    for (int attempt = 0; attempt < 2 && m_file.makePrivate(); ++attempt) {
        m_connection =
            std::make_unique<HistoryConnection>(m_path, HistoryConnection::Access::ReadWrite);
        if (!m_connection->isOpen())
            break;
        m_connection->setPatience(patience);
        m_hasSchema = false;
        if (!isDamage(prepareSchema()))
            return;
        // Nothing was written, and closing takes away the log that opening made.
        m_connection.reset();
        if (!keepAside())
            break;
    }
    m_connection.reset();
    report(notOpened.toString());
}

// What is written to a deleted file is lost, and SQLite does not mind.
bool HistoryDatabase::begin()
{
    if (!std::exchange(m_isOpened, true) || m_file.isGone())
        open();
    else if (m_connection)
        m_connection->setPatience(patience);
    return m_connection != nullptr;
}

void HistoryDatabase::close()
{
    m_connection.reset();
}

// Closed after it was renamed, the damaged file stays as it is.
bool HistoryDatabase::keepAside()
{
    const auto keptAs = m_file.keepAside();
    m_connection.reset();
    if (!keptAs)
        report(notOpened.toString());
    else if (!keptAs->isEmpty())
        report(u"history: 文件不是数据库, 已另存为 %1"_s.arg(QFileInfo(*keptAs).fileName()));
    return keptAs.has_value();
}

// `operation` gives SQLite's result code. It runs once more with a new file where
// the old one turns out to be damaged; a new one that is damaged too ends it, lest
// a broken disk fill with files.
void HistoryDatabase::perform(const std::function<int()> &operation)
{
    // A process that finds another one making the database has it ready later.
    const auto succeeds = [&] {
        return (m_hasSchema || !isDamage(prepareSchema())) && !isDamage(operation());
    };
    if (!begin() || succeeds())
        return;
    if (keepAside()) {
        open();
        if (!m_connection || succeeds())
            return;
    }
    m_connection.reset();
    report(notOpened.toString());
}

// The first failure ends it: the same cause would only speak again.
int HistoryDatabase::prepareSchema()
{
    for (const char *sql : schema) {
        QString message;
        int result = m_connection->exec(sql, &message);
        // Where waiting might be a deadlock, SQLite leaves it to its caller.
        while (kind(result) == SQLITE_BUSY && m_connection->hasPatience()) {
            std::this_thread::sleep_for(schemaPause);
            result = m_connection->exec(sql, &message);
        }
        if (result != SQLITE_OK) {
            if (!isDamage(result))
                report(u"history SQL: %1"_s.arg(message));
            return result;
        }
    }
    // A power cut may cost the last rows, never the database; in return, a row
    // does not make its writer wait for the disk.
    m_connection->exec("PRAGMA synchronous=NORMAL;");
    // In KiB: many times what a lookup touches. The system keeps the file's pages anyway,
    // and a connection would hold 2 MB of them again.
    m_connection->exec("PRAGMA cache_size=-512;");
    m_hasSchema = true;
    return SQLITE_OK;
}

// A cause that lasts is told once.
void HistoryDatabase::report(const QString &message)
{
    if (std::exchange(m_lastReport, message) != message)
        qCCritical(log::translate).noquote() << message;
}

void HistoryDatabase::add(const Row &row)
{
    std::optional<QString> last;
    perform([&] {
        const int result = newest(row.source, row.to, last);
        return isDamage(result) || last == row.translation ? result : insert(row);
    });
}

std::optional<QString> HistoryDatabase::latestTranslation(const QString &source, Language target)
{
    std::optional<QString> translation;
    perform([&] { return newest(source, target, translation); });
    return translation;
}

int HistoryDatabase::newest(const QString &source, Language target,
                            std::optional<QString> &translation)
{
    SqlStatement row = m_connection->prepare(newestTranslation);
    row.bind(1, source).bind(2, rawValue(target));
    translation = row.step() ? std::optional(row.text(0)) : std::nullopt;
    return row.result();
}

int HistoryDatabase::insert(const Row &row)
{
    SqlStatement statement = m_connection->prepare(insertRow);
    statement.bind(1, canonical(QUuid::createUuid()))
        .bind(2, row.time)
        .bind(3, row.source)
        .bind(4, row.translation)
        .bind(5, rawValue(row.from))
        .bind(6, rawValue(row.to))
        .step();
    return statement.result();
}

void HistoryDatabase::remove(const QUuid &id)
{
    perform([&] {
        SqlStatement row = m_connection->prepare(deleteRow);
        row.bind(1, canonical(id)).step();
        return row.result();
    });
}

void HistoryDatabase::clear()
{
    perform([this] {
        QString message;
        const int result = m_connection->exec(deleteAll, &message);
        if (result != SQLITE_OK && !isDamage(result))
            report(u"history SQL: %1"_s.arg(message));
        return result;
    });
}

void HistoryDatabase::giveUp(const std::optional<HistoryFile::Identity> &damaged)
{
    if (m_file.seen() == damaged)
        keepAside();
}

} // namespace nivora
