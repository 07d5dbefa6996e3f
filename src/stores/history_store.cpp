#include "stores/history_store.h"

#include "history_database.h"
#include "history_reader.h"

#include <QPromise>
#include <QThreadPool>

namespace nivora {

namespace {

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

HistoryStore::HistoryStore(std::function<bool()> isEnabled, QString path,
                           std::chrono::milliseconds keeping)
    : m_isEnabled(std::move(isEnabled))
    , m_path(std::move(path))
    , m_database(std::make_shared<HistoryDatabase>(m_path))
    , m_keeping(keeping)
{
    m_queue.run([database = m_database] { database->begin(); });
}

// Closing writes as well.
HistoryStore::~HistoryStore()
{
    m_queue.start([database = m_database] { database->close(); });
}

QString HistoryStore::defaultPath()
{
    return HistoryFile::defaultPath();
}

void HistoryStore::record(const QString &source, const QString &translation, Language from,
                          Language to)
{
    if (!m_isEnabled())
        return;
    const HistoryDatabase::Row row{source.trimmed(), translation.trimmed(), from, to,
                                   secondsSinceEpoch()};
    if (!canBeKey(row.source) || row.translation.isEmpty())
        return;
    if (!m_queue.run([database = m_database, row] { database->add(row); }))
        m_unwritten[{row.source, to}] = row.translation;
    reload();
}

std::optional<QString> HistoryStore::latestTranslation(const QString &source, Language target)
{
    const QString key = source.trimmed();
    if (!canBeKey(key))
        return std::nullopt;
    if (m_queue.isIdle())
        m_unwritten.clear();
    else if (const auto row = m_unwritten.find({key, target}); row != m_unwritten.end())
        return row->second;
    const auto found = std::make_shared<std::optional<QString>>();
    const bool isDone = m_queue.run([database = m_database, found, key, target] {
        *found = database->latestTranslation(key, target);
    });
    return isDone ? *found : std::nullopt;
}

void HistoryStore::remove(const QUuid &id)
{
    m_queue.run([database = m_database, id] { database->remove(id); });
    reload();
}

void HistoryStore::clear()
{
    m_unwritten.clear();
    m_queue.run([database = m_database] { database->clear(); });
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

// After what is being written. The newest state is what counts: a reading that is under
// way ends early.
void HistoryStore::reload(bool isRepeated)
{
    if (!m_watched)
        return;
    m_reload.cancel();
    auto promise = std::make_shared<QPromise<HistoryList>>();
    m_reload = platform::whenFinished<HistoryList>(promise->future(), [this, isRepeated](
                                                                          HistoryList list) {
        if (list.isDamaged && !isRepeated) {
            m_queue.start([database = m_database, read = list.read] { database->giveUp(read); });
            return reload(true);
        }
        m_totalCount = list.total.value_or(m_totalCount);
        if (list.entries)
            m_entries = std::move(*list.entries);
        Q_EMIT changed();
    });
    promise->start();
    // It may take seconds, and a row none.
    m_queue.start([database = m_database, promise, path = m_path, search = m_search] {
        if (!database->begin())
            return;
        QThreadPool::globalInstance()->start([promise, path, search, read = database->seen()] {
            HistoryList list = readHistory(path, search, displayLimit,
                                           [&promise] { return promise->isCanceled(); });
            list.read = read;
            promise->addResult(std::move(list));
            promise->finish();
        });
    });
}

} // namespace nivora
