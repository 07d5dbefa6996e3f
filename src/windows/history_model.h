#pragma once

#include "stores/history_entry.h"

#include "platform/task.h"

#include <QAbstractListModel>

#include <vector>

namespace nivora {

// The rows of the history for a view. Rows come and go one run at a time where
// that is all that changed, so that a view keeps its place. A long list is shown
// bit by bit: what a view does for each row is never done for all of them at once.
class HistoryModel : public QAbstractListModel
{
    Q_OBJECT

public:
    void setEntries(const std::vector<HistoryEntry> &entries);

    const HistoryEntry &entry(int row) const { return m_entries[std::size_t(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    bool insertRun(const std::vector<HistoryEntry> &entries);
    bool removeRun(const std::vector<HistoryEntry> &entries);
    void showMore();

    std::vector<HistoryEntry> m_entries;
    int m_shown = 0; // rows of them
    platform::Task m_more;
};

} // namespace nivora
