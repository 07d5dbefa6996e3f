#include "history_model.h"

#include "history_row.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr int firstRows = 16; // more than a window of usual height shows
// Some milliseconds of laying out: the window answers meanwhile.
constexpr int furtherRows = 20;

// Where the entries begin to differ from the shown ones.
int difference(const std::vector<HistoryEntry> &shown, int count,
               const std::vector<HistoryEntry> &entries)
{
    const auto end = shown.begin() + std::min<std::ptrdiff_t>(count, std::ssize(entries));
    return int(std::mismatch(shown.begin(), end, entries.begin(),
                             [](const auto &a, const auto &b) { return a.id == b.id; })
                   .first -
               shown.begin());
}

bool sameIds(const HistoryEntry *a, const HistoryEntry *b, int count)
{
    return std::equal(a, a + count, b,
                      [](const auto &left, const auto &right) { return left.id == right.id; });
}

} // namespace

int HistoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_shown;
}

QVariant HistoryModel::data(const QModelIndex &index, int role) const
{
    if (role == Qt::AccessibleTextRole || role == Qt::DisplayRole)
        return spokenRow(entry(index.row()));
    return {};
}

void HistoryModel::setEntries(const std::vector<HistoryEntry> &entries)
{
    if (m_shown == 0 || !(insertRun(entries) || removeRun(entries))) {
        beginResetModel();
        m_entries = entries;
        m_shown = std::min(firstRows, int(entries.size()));
        endResetModel();
    }
    showMore();
}

// A translation that was made meanwhile; also where nothing changed.
bool HistoryModel::insertRun(const std::vector<HistoryEntry> &entries)
{
    const int at = difference(m_entries, m_shown, entries);
    if (at == m_shown) {
        m_entries = entries;
        return true;
    }
    const HistoryEntry &next = entry(at);
    const auto found =
        std::ranges::find(entries.begin() + at, entries.end(), next.id, &HistoryEntry::id);
    const int run = int(found - entries.begin()) - at;
    const int kept = std::min(m_shown, int(entries.size()) - run); // the oldest may fall out
    if (found == entries.end() || run == 0 || !sameIds(&next, &*found, kept - at))
        return false;
    if (kept < m_shown) {
        beginRemoveRows({}, kept, m_shown - 1);
        m_shown = kept;
        endRemoveRows();
    }
    beginInsertRows({}, at, at + run - 1);
    m_entries = entries;
    m_shown += run;
    endInsertRows();
    return true;
}

// A row that was deleted.
bool HistoryModel::removeRun(const std::vector<HistoryEntry> &entries)
{
    const int at = difference(m_entries, m_shown, entries);
    int next = m_shown; // the first shown row behind the run
    if (at < int(entries.size())) {
        while (next > at && entry(next - 1).id != entries[std::size_t(at)].id)
            --next;
        --next;
    }
    if (next <= at || m_shown - next > int(entries.size()) - at ||
        !sameIds(m_entries.data() + next, entries.data() + at, m_shown - next))
        return false;
    beginRemoveRows({}, at, next - 1);
    m_entries = entries;
    m_shown -= next - at;
    endRemoveRows();
    return true;
}

void HistoryModel::showMore()
{
    m_more.cancel();
    if (m_shown == int(m_entries.size()))
        return;
    m_more = platform::delay(0ms, [this] {
        const int next = std::min(m_shown + furtherRows, int(m_entries.size()));
        beginInsertRows({}, m_shown, next - 1);
        m_shown = next;
        endInsertRows();
        showMore();
    });
}

} // namespace nivora
