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

constexpr QStringView notOpened = u"history: 打开 SQLite 失败";

} // namespace

HistoryStore::HistoryStore(std::function<bool()> isEnabled, QString path,
                           std::chrono::milliseconds keeping)
    : m_isEnabled(std::move(isEnabled))
    , m_path(std::move(path))
    , m_file(std::make_unique<HistoryFile>(m_path))
    , m_keeping(keeping)
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
    m_database.reset();
    // Once more with a new file, where the old one was none of SQLite's.
    for (int attempt = 0; attempt < 2 && m_file->makePrivate(); ++attempt) {
        m_database =
            std::make_unique<HistoryConnection>(m_path, HistoryConnection::Access::ReadWrite);
        if (!m_database->isOpen())
            break;
        m_database->setPatience(patience);
        m_hasSchema = false;
        if (!isDamage(prepareSchema()))
            return;
        // Nothing was written, and closing takes away the log that opening made.
        m_database.reset();
        if (!keepAside())
            break;
    }
    m_database.reset();
    report(notOpened.toString());
}

// What is written to a deleted file is lost, and SQLite does not mind.
bool HistoryStore::begin()
{
    if (m_file->isGone())
        open();
    else if (m_database)
        m_database->setPatience(patience);
    return m_database != nullptr;
}

// Closed after it was renamed, the damaged file stays as it is.
bool HistoryStore::keepAside()
{
    const auto keptAs = m_file->keepAside();
    m_database.reset();
    if (!keptAs)
        report(notOpened.toString());
    else if (!keptAs->isEmpty())
        report(u"history: 文件不是数据库, 已另存为 %1"_s.arg(QFileInfo(*keptAs).fileName()));
    return keptAs.has_value();
}

// `operation` gives SQLite's result code. It runs once more with a new file where
// the old one turns out to be damaged; a new one that is damaged too ends it, lest
// a broken disk fill with files.
void HistoryStore::perform(const std::function<int()> &operation)
{
    // A process that finds another one making the database has it ready later.
    const auto succeeds = [&] {
        return (m_hasSchema || !isDamage(prepareSchema())) && !isDamage(operation());
    };
    if (!begin() || succeeds())
        return;
    if (keepAside()) {
        open();
        if (!m_database || succeeds())
            return;
    }
    m_database.reset();
    report(notOpened.toString());
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
    // In KiB: many times what a lookup touches. The system keeps the file's pages anyway,
    // and a connection would hold 2 MB of them again.
    m_database->exec("PRAGMA cache_size=-512;");
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
    if (!m_isEnabled())
        return;
    const QString key = source.trimmed();
    const QString text = translation.trimmed();
    if (!canBeKey(key) || text.isEmpty())
        return;
    std::optional<QString> last;
    perform([&] {
        const int result = newest(key, to, last);
        return isDamage(result) || last == text ? result : insert(key, text, from, to);
    });
    if (last != text)
        reload();
}

std::optional<QString> HistoryStore::latestTranslation(const QString &source, Language target)
{
    const QString key = source.trimmed();
    std::optional<QString> translation;
    if (canBeKey(key))
        perform([&] { return newest(key, target, translation); });
    return translation;
}

int HistoryStore::newest(const QString &key, Language target, std::optional<QString> &translation)
{
    SqlStatement row = m_database->prepare(newestTranslation);
    row.bind(1, key).bind(2, rawValue(target));
    translation = row.step() ? std::optional(row.text(0)) : std::nullopt;
    return row.result();
}

int HistoryStore::insert(const QString &key, const QString &translation, Language from, Language to)
{
    SqlStatement row = m_database->prepare(insertRow);
    row.bind(1, canonical(QUuid::createUuid()))
        .bind(2, secondsSinceEpoch())
        .bind(3, key)
        .bind(4, translation)
        .bind(5, rawValue(from))
        .bind(6, rawValue(to))
        .step();
    return row.result();
}

void HistoryStore::remove(const QUuid &id)
{
    perform([&] {
        SqlStatement row = m_database->prepare(deleteRow);
        row.bind(1, canonical(id)).step();
        return row.result();
    });
    reload();
}

void HistoryStore::clear()
{
    perform([this] {
        QString message;
        const int result = m_database->exec(deleteAll, &message);
        if (result != SQLITE_OK && !isDamage(result))
            report(u"history SQL: %1"_s.arg(message));
        return result;
    });
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
    m_release.cancel();
    if (!m_watched)
        release();
    reload();
}

// Two thousand rows may take tens of megabytes.
void HistoryStore::release()
{
    m_release = platform::delay(m_keeping, [this] {
        m_entries = {};
        m_totalCount = 0;
        Q_EMIT changed();
    });
}

void HistoryStore::reload(bool isRepeated)
{
    if (!m_watched || !begin())
        return;
    // The newest state is what counts: a reading that is under way ends early.
    m_reload.cancel();
    auto promise = std::make_shared<QPromise<HistoryList>>();
    m_reload = platform::whenFinished<HistoryList>(
        promise->future(), [this, isRepeated, seen = m_file->seen()](HistoryList list) {
            // A file that has taken the place of the damaged one stays.
            if (list.isDamaged && !isRepeated && (m_file->seen() != seen || keepAside()))
                return reload(true);
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
