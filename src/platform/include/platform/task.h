#pragma once

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>

#include <chrono>
#include <functional>
#include <utility>

namespace nivora::platform {

// One piece of asynchronous work on the thread that started it.
//
// The contract, the same for every operation in the program:
//  - starting one never calls back before control returns to the event loop;
//  - exactly one terminal result is delivered, unless the handle is dropped;
//  - after cancel(), or once the handle is gone, nothing is delivered at all;
//  - a callback may drop, replace or cancel the handle of the very operation
//    that is calling it.
class Operation : public QObject
{
    Q_OBJECT

public:
    bool isRunning() const { return m_running; }

protected:
    Operation() = default;
    ~Operation() override = default;

    // Releases whatever the operation waits for. Called once: just before the
    // terminal result is delivered, or on cancellation.
    virtual void stop() = 0;

    // Delivers an intermediate result. False when the operation was cancelled
    // meanwhile: the caller then returns without delivering anything more.
    template<typename Callback>
    bool deliver(Callback &&callback)
    {
        if (!m_running)
            return false;
        ++m_delivering;
        callback();
        --m_delivering;
        return m_running;
    }

    // Delivers the terminal result and ends the operation.
    template<typename Callback>
    void finish(Callback &&callback)
    {
        if (!m_running)
            return;
        m_running = false;
        stop();
        ++m_delivering;
        callback();
        --m_delivering;
    }

private:
    friend class Task;

    void cancel();
    void dispose();

    bool m_running = true;
    int m_delivering = 0;
};

// The only way to hold an operation: a move-only handle that owns it.
// Assigning to a handle replaces, and so cancels, what it held before.
class [[nodiscard]] Task
{
public:
    Task() = default;
    explicit Task(Operation *operation)
        : m_operation(operation)
    {
    }
    Task(Task &&other) noexcept
        : m_operation(std::exchange(other.m_operation, nullptr))
    {
    }
    Task &operator=(Task &&other) noexcept;
    Task(const Task &) = delete;
    Task &operator=(const Task &) = delete;
    ~Task() { cancel(); }

    // True from the start until the terminal result or the cancellation.
    bool isRunning() const { return m_operation && m_operation->isRunning(); }

    void cancel();

private:
    Operation *m_operation = nullptr;
};

// Calls back once after `duration`, which may be zero.
Task delay(std::chrono::milliseconds duration, std::function<void()> done);

namespace detail {

template<typename Result>
class FutureOperation final : public Operation
{
public:
    FutureOperation(QFuture<Result> future, std::function<void(Result)> done)
        : m_done(std::move(done))
    {
        connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] {
            finish([this] {
                const auto watched = m_watcher.future();
                m_done(watched.resultCount() > 0 ? watched.result() : Result{});
            });
        });
        m_watcher.setFuture(future);
    }

private:
    void stop() override
    {
        if (!m_watcher.isFinished())
            m_watcher.cancel();
    }

    QFutureWatcher<Result> m_watcher;
    std::function<void(Result)> m_done;
};

} // namespace detail

// Turns the answer of a worker thread into a task of this thread. A worker that
// drops its promise without an answer gives a default-constructed Result.
// Cancelling the task cancels the future, which the worker may look at.
template<typename Result>
Task whenFinished(QFuture<Result> future, std::function<void(Result)> done)
{
    return Task(new detail::FutureOperation<Result>(std::move(future), std::move(done)));
}

} // namespace nivora::platform
