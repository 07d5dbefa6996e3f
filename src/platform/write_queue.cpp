#include "platform/write_queue.h"

#include <tuple>

using namespace std::chrono_literals;

namespace nivora::platform {

namespace {

// Mostly it takes a fraction of a millisecond.
constexpr auto longestWait = 50ms;
constexpr auto closingWait = 2000ms;

bool isReady(const std::shared_future<void> &job, std::chrono::milliseconds wait = {})
{
    return !job.valid() || job.wait_for(wait) == std::future_status::ready;
}

} // namespace

WriteQueue::WriteQueue()
    : m_thread(std::make_unique<QThreadPool>())
{
    m_thread->setMaxThreadCount(1);
}

WriteQueue::~WriteQueue()
{
    // A pool's own end would wait for ever.
    if (!isIdle(closingWait))
        std::ignore = m_thread.release();
}

void WriteQueue::start(std::function<void()> job)
{
    const auto done = std::make_shared<std::promise<void>>();
    m_last = done->get_future();
    m_thread->start([done, job = std::move(job)] {
        job();
        done->set_value();
    });
}

bool WriteQueue::run(std::function<void()> job)
{
    const bool isBehind = !isReady(m_late);
    start(std::move(job));
    if (isBehind)
        return isIdle();
    if (isIdle(longestWait))
        return true;
    m_late = m_last;
    return false;
}

bool WriteQueue::replace(std::function<void()> job)
{
    const bool isBehind = !isReady(m_late);
    m_thread->clear();
    if (!isBehind)
        return run(std::move(job));
    start(std::move(job));
    m_late = m_last; // the one before may be forgotten
    return false;
}

bool WriteQueue::isIdle(std::chrono::milliseconds wait) const
{
    return isReady(m_last, wait);
}

} // namespace nivora::platform
