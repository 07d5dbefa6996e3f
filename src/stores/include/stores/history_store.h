#pragma once

#include "stores/history_entry.h"

#include "core/language.h"

#include "platform/task.h"
#include "platform/write_queue.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace nivora {

class HistoryDatabase;

// Every finished translation, in a database of this user and this machine. Main
// thread only. Nothing here fails towards the caller: a row that cannot be
// written is not written, one that cannot be read is not there, and without a
// database the history is empty. A file that is deleted meanwhile is made anew,
// and one that turns out to be damaged is kept aside for a new one.
//
// All of the database is a thread's, and nobody waits for it longer than 50 ms: a row that
// takes longer is on its way, and what is not found by then counts as not there.
class HistoryStore : public QObject
{
    Q_OBJECT

public:
    // What is shown at most; the table has no limit of its own.
    static constexpr int displayLimit = 2000;

    // `isEnabled` is asked at each record(). What was on show is kept for `keeping`
    // after the last watcher has gone.
    explicit HistoryStore(std::function<bool()> isEnabled, QString path = defaultPath(),
                          std::chrono::milliseconds keeping = std::chrono::minutes(1));
    ~HistoryStore() override;

    // $XDG_DATA_HOME/Nivora/history.sqlite, below the temporary folder where
    // that folder cannot be had.
    static QString defaultPath();

    // Adds a row, unless the newest one for this source and target says the
    // same. Both texts are trimmed; an empty one makes no row.
    void record(const QString &source, const QString &translation, Language from, Language to);

    // The newest translation of exactly this text, trimmed, into this target.
    std::optional<QString> latestTranslation(const QString &source, Language target);

    void remove(const QUuid &id);
    void clear();

    // Shows the rows with the term in either text; all rows for an empty one.
    // The term may hold LIKE's wildcards; ASCII letters match in either case.
    void applySearch(const QString &term);
    QString search() const { return m_search; }

    // The rows on show, newest first, and the number of rows in the table. They
    // follow the table only while somebody watches, since counting and searching
    // a long history takes its time. That time is a worker's: what is here stays
    // until its answer comes with changed(). Nobody watching, it goes after a while.
    void setWatched(bool watched);
    const std::vector<HistoryEntry> &entries() const { return m_entries; }
    qint64 totalCount() const { return m_totalCount; }
    // Whether an answer of the worker's is still to come.
    bool isReading() const { return m_reload.isRunning(); }

Q_SIGNALS:
    void changed();

private:
    void reload(bool isRepeated = false);
    void release();

    std::function<bool()> m_isEnabled;
    QString m_path;
    std::shared_ptr<HistoryDatabase> m_database; // the queue's
    platform::WriteQueue m_queue;
    // Rows that are on their way, at least: the newest translation of a text into a target.
    std::map<std::pair<QString, Language>, QString> m_unwritten;

    QString m_search;
    bool m_watched = false;
    std::vector<HistoryEntry> m_entries;
    qint64 m_totalCount = 0;
    platform::Task m_reload;
    const std::chrono::milliseconds m_keeping;
    platform::Task m_release;
};

} // namespace nivora
