#include "stores/history_store.h"

#include "history_connection.h"
#include "history_file.h"
#include "history_reader.h"

#include "platform/log.h"

#include <QFileInfo>
#include <QPromise>
#include <QThreadPool>

#include <sqlite3.h>

#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// All that one call may wait for another process.
constexpr auto patience = 50ms;
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

bool isDamage(int result)
{
    return kind(result) == SQLITE_NOTADB || kind(result) == SQLITE_CORRUPT;
}

QString canonical(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

// Fine enough to order rows that follow each other at once.
double secondsSinceEpoch()
{
    const std::chrono::duration<double> since = std::chrono::system_clock::now().time_since_epoch();
    return since.count();
}

// The database ends a text at its first NUL, so that one text would pass for
// another.
bool canBeKey(const QString &text)
{
    return !text.isEmpty() && !text.contains(QChar::Null);
}

} // namespace

HistoryStore::HistoryStore(std::function<bool()> isEnabled, QString path)
    : m_isEnabled(std::move(isEnabled))
    , m_path(std::move(path))
{
    open();
}

HistoryStore::~HistoryStore() = default;

QString HistoryStore::defaultPath()
{
    return HistoryFile::defaultPath();
}

void HistoryStore::open()
{
    const HistoryFile file(m_path);
    // Once more with a new file, where the old one was none of SQLite's.
    for (int attempt = 0; attempt < 2 && file.makePrivate(); ++attempt) {
        const auto identity = file.identity();
        m_database =
            std::make_unique<HistoryConnection>(m_path, HistoryConnection::Access::ReadWrite);
        if (!m_database->isOpen())
            break;
        m_database->setPatience(patience);
        const int result = prepareSchema();
        if (!isDamage(result))
            return;
        m_database.reset();
        const auto keptAs = file.keepAside(identity);
        if (!keptAs)
            break;
        if (!keptAs->isEmpty())
            report(u"history: 文件不是数据库, 已另存为 %1"_s.arg(QFileInfo(*keptAs).fileName()));
    }
    m_database.reset();
    report(u"history: 打开 SQLite 失败"_s);
}

// A process that finds another one making the database has it ready later.
bool HistoryStore::begin()
{
    if (!m_database)
        return false;
    m_database->setPatience(patience);
    if (!m_hasSchema)
        prepareSchema();
    return true;
}

// The first failure ends it: the same cause would only speak again.
int HistoryStore::prepareSchema()
{
    for (const char *sql : schema) {
        QString message;
        int result = m_database->exec(sql, &message);
        // Where waiting might be a deadlock, SQLite leaves it to its caller.
        while (kind(result) == SQLITE_BUSY && m_database->hasPatience()) {
            std::this_thread::sleep_for(schemaPause);
            result = m_database->exec(sql, &message);
        }
        if (result != SQLITE_OK) {
            if (!isDamage(result))
                report(u"history SQL: %1"_s.arg(message));
            return result;
        }
    }
    // A power cut may cost the last rows, never the database; in return, a row
    // does not make its writer wait for the disk.
    m_database->exec("PRAGMA synchronous=NORMAL;");
    m_hasSchema = true;
    return SQLITE_OK;
}

// A cause that lasts is told once.
void HistoryStore::report(const QString &message)
{
    if (std::exchange(m_lastReport, message) != message)
        qCCritical(log::translate).noquote() << message;
}

void HistoryStore::record(const QString &source, const QString &translation, Language from,
                          Language to)
{
    if (!m_isEnabled() || !begin())
        return;
    const QString key = source.trimmed();
    const QString text = translation.trimmed();
    if (!canBeKey(key) || text.isEmpty() || newest(key, to) == text)
        return;
    if (SqlStatement row = m_database->prepare(insertRow)) {
        row.bind(1, canonical(QUuid::createUuid()))
            .bind(2, secondsSinceEpoch())
            .bind(3, key)
            .bind(4, text)
            .bind(5, rawValue(from))
            .bind(6, rawValue(to))
            .step();
    }
    reload();
}

std::optional<QString> HistoryStore::latestTranslation(const QString &source, Language target)
{
    const QString key = source.trimmed();
    return canBeKey(key) && begin() ? newest(key, target) : std::nullopt;
}

std::optional<QString> HistoryStore::newest(const QString &trimmedSource, Language target)
{
    SqlStatement row = m_database->prepare(newestTranslation);
    if (row.bind(1, trimmedSource).bind(2, rawValue(target)).step())
        return row.text(0);
    return std::nullopt;
}

void HistoryStore::remove(const QUuid &id)
{
    if (!begin())
        return;
    m_database->prepare(deleteRow).bind(1, canonical(id)).step();
    reload();
}

void HistoryStore::clear()
{
    if (!begin())
        return;
    QString message;
    if (m_database->exec(deleteAll, &message) != SQLITE_OK)
        report(u"history SQL: %1"_s.arg(message));
    reload();
}

void HistoryStore::applySearch(const QString &term)
{
    m_search = term;
    reload();
}

void HistoryStore::setWatched(bool watched)
{
    if (std::exchange(m_watched, watched) == watched)
        return;
    m_reload.cancel();
    reload();
}

void HistoryStore::reload()
{
    if (!m_watched || !m_database)
        return;
    // The newest state is what counts: a reading that is under way ends early.
    m_reload.cancel();
    auto promise = std::make_shared<QPromise<HistoryList>>();
    m_reload = platform::whenFinished<HistoryList>(promise->future(), [this](HistoryList list) {
        m_totalCount = list.total.value_or(m_totalCount);
        if (list.entries)
            m_entries = std::move(*list.entries);
        Q_EMIT changed();
    });
    promise->start();
    QThreadPool::globalInstance()->start([promise, path = m_path, search = m_search] {
        promise->addResult(
            readHistory(path, search, displayLimit, [&promise] { return promise->isCanceled(); }));
        promise->finish();
    });
}

} // namespace nivora
