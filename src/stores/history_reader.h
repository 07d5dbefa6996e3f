#pragma once

#include "history_file.h"

#include "stores/history_entry.h"

#include <functional>
#include <optional>
#include <vector>

namespace nivora {

// What one reading of the history found. What could not be read is absent.
struct HistoryList
{
    std::optional<qint64> total; // rows in the table, whatever the search
    std::optional<std::vector<HistoryEntry>> entries;
    bool isDamaged = false;                      // the file, so that rows may be missing
    std::optional<HistoryFile::Identity> read{}; // set by the caller
};

// Counts the rows and reads the newest `limit` that match, or fewer where their
// texts are so long that they would fill the memory. Takes seconds for a
// very long history, so it has a connection of its own and is for a worker;
// it ends early once `interrupted` gives true.
HistoryList readHistory(const QString &path, const QString &search, int limit,
                        std::function<bool()> interrupted);

} // namespace nivora
