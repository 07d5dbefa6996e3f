#pragma once

#include <QHash>
#include <QtGlobal>

#include <mutex>

namespace nivora::linuxdesktop {

// Which programs fetched what was offered, and how often. Shared by the thread
// that hands it out and the one that asks.
class X11FetchLog
{
public:
    // 0 stands for a program that cannot be told.
    void add(qint64 process)
    {
        const std::lock_guard lock(m_mutex);
        ++m_counts[process];
    }

    // By this process or by one that cannot be told; by any for 0.
    int count(qint64 process) const
    {
        const std::lock_guard lock(m_mutex);
        int sum = 0;
        for (const auto &[fetcher, count] : m_counts.asKeyValueRange())
            sum += process == 0 || fetcher == 0 || fetcher == process ? count : 0;
        return sum;
    }

private:
    mutable std::mutex m_mutex;
    QHash<qint64, int> m_counts;
};

} // namespace nivora::linuxdesktop
