#pragma once

#include "stores/history_entry.h"

#include "platform/task.h"

#include <QString>

#include <functional>
#include <vector>

namespace nivora {

enum class HistoryFormat {
    Csv,  // a line of headings, then a record for each entry
    Json, // an array of objects
};

// The entries for other programs, in their order: dates as ISO 8601 in UTC,
// languages by their raw values.
QByteArray historyTo(HistoryFormat format, const std::vector<HistoryEntry> &entries);

// Writes them to a file that its owner alone can read, by a worker; a file of that
// name is replaced as a whole. Gives what went wrong; empty when nothing did.
platform::Task exportHistory(std::vector<HistoryEntry> entries, HistoryFormat format,
                             const QString &path, std::function<void(QString)> done);

} // namespace nivora
