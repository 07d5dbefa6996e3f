#include "platform_memory/memory_idle_monitor.h"

#include <QTimer>

namespace nivora::memory {

namespace {

class Wait final : public platform::Operation
{
public:
    Wait(std::shared_ptr<bool> away, std::function<void()> done)
        : m_away(std::move(away))
        , m_done(std::move(done))
    {
        connect(&m_poll, &QTimer::timeout, this, [this] {
            if (*m_away)
                finish(m_done);
        });
        m_poll.start(std::chrono::milliseconds(1));
    }

private:
    void stop() override { m_poll.stop(); }

    std::shared_ptr<bool> m_away;
    std::function<void()> m_done;
    QTimer m_poll;
};

} // namespace

platform::Task MemoryIdleMonitor::whenIdle(std::chrono::milliseconds, std::function<void()> done)
{
    return platform::Task(new Wait(m_away, std::move(done)));
}

} // namespace nivora::memory
