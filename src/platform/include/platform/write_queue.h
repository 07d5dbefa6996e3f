#pragma once

#include <QThreadPool>

#include <chrono>
#include <functional>
#include <future>
#include <memory>

namespace nivora::platform {

// Carries out what writes to the disk one after the other, in a thread that is there
// while there is something to do: a slow disk holds nobody up for longer than 50 ms.
// Used by the thread that made it.
class WriteQueue
{
public:
    WriteQueue();
    // Waits for what is not through yet, two seconds at most. What takes longer goes on
    // for as long as the process lives: jobs own what they use.
    ~WriteQueue();

    void start(std::function<void()> job);
    // Waits for it as well, 50 ms at most, and not at all while an earlier one that was
    // waited for in vain is not through. True when it is done.
    bool run(std::function<void()> job);
    // The same, and forgets those that have not begun.
    bool replace(std::function<void()> job);

    // Whether everything is done, or becomes so within this time.
    bool isIdle(std::chrono::milliseconds wait = {}) const;

private:
    std::unique_ptr<QThreadPool> m_thread; // one
    std::shared_future<void> m_last;
    std::shared_future<void> m_late; // was waited for in vain
};

} // namespace nivora::platform
