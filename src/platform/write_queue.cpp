#include "platform/write_queue.h"

#include <tuple>

using namespace std::chrono_literals;

namespace nivora::platform {

namespace {

// Mostly it takes a fraction of a millisecond.
constexpr auto longestWait = 50ms;
constexpr auto closingWait = 2000ms;

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
    const bool isBehind = m_isLate && !isIdle();
    start(std::move(job));
    m_isLate = isBehind || !isIdle(longestWait);
    return !m_isLate;
}

bool WriteQueue::replace(std::function<void()> job)
{
    if (m_isLate && !isIdle()) {
        m_thread->clear();
        start(std::move(job));
        return false;
    }
    return run(std::move(job));
}

bool WriteQueue::isIdle(std::chrono::milliseconds wait) const
{
    return !m_last.valid() || m_last.wait_for(wait) == std::future_status::ready;
}

} // namespace nivora::platform
