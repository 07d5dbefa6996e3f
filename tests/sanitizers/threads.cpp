#include <QRunnable>
#include <QThreadPool>

#include <sanitizer/tsan_interface.h>

#include <utility>

// What every program is linked with that is built with the thread sanitizer.

// Qt and GLib are not built with it; tsan.supp tells what follows from that. Programs
// start others while they have threads, and those go on to have some of their own.
extern "C" const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1:die_after_fork=0:second_deadlock_stack=1";
}

namespace {

class Handover final : public QRunnable
{
public:
    explicit Handover(std::function<void()> work)
        : m_work(std::move(work))
    {
        __tsan_release(this);
    }

    void run() override
    {
        __tsan_acquire(this);
        m_work();
    }

private:
    std::function<void()> m_work;
};

} // namespace

// In place of Qt's. The sanitizer does not see how Qt's locks order what comes before a
// start and the work: where a thread that is busy takes it over, it would report a race.
void QThreadPool::start(std::function<void()> work, int priority)
{
    start(new Handover(std::move(work)), priority);
}
