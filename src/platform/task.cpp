#include "platform/task.h"

#include <QTimer>

namespace nivora::platform {

void Operation::cancel()
{
    if (!m_running)
        return;
    m_running = false;
    stop();
}

void Operation::dispose()
{
    cancel();
    // Within one of its own callbacks the object must outlive the call.
    if (m_delivering > 0)
        deleteLater();
    else
        delete this;
}

Task &Task::operator=(Task &&other) noexcept
{
    if (this != &other) {
        Operation *old = std::exchange(m_operation, std::exchange(other.m_operation, nullptr));
        if (old)
            old->dispose();
    }
    return *this;
}

void Task::cancel()
{
    if (Operation *old = std::exchange(m_operation, nullptr))
        old->dispose();
}

namespace {

class DelayOperation final : public Operation
{
public:
    DelayOperation(std::chrono::milliseconds duration, std::function<void()> done)
        : m_done(std::move(done))
    {
        m_timer.setSingleShot(true);
        // A coarse timer may fire early, and the callers count on the whole span.
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] { finish(m_done); });
        m_timer.start(duration);
    }

private:
    void stop() override { m_timer.stop(); }

    QTimer m_timer;
    std::function<void()> m_done;
};

} // namespace

Task delay(std::chrono::milliseconds duration, std::function<void()> done)
{
    return Task(new DelayOperation(duration, std::move(done)));
}

} // namespace nivora::platform
