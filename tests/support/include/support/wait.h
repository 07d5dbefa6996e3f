#pragma once

#include <QCoreApplication>
#include <QThread>

#include <chrono>

namespace nivora::test {

using Clock = std::chrono::steady_clock;

inline double millisecondsBetween(Clock::time_point start, Clock::time_point end)
{
    return std::chrono::duration<double, std::milli>(end - start).count();
}

// Polls until `condition` holds, serving this thread's events in between. False
// when `bound` has passed without it.
template<typename Condition>
bool waitUntil(Condition &&condition, std::chrono::milliseconds bound,
               std::chrono::microseconds interval = std::chrono::milliseconds(5))
{
    const auto deadline = Clock::now() + bound;
    for (;;) {
        QCoreApplication::processEvents();
        if (condition())
            return true;
        if (Clock::now() >= deadline)
            return false;
        QThread::usleep(static_cast<unsigned long>(interval.count()));
    }
}

} // namespace nivora::test
