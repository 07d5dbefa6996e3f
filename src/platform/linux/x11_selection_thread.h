#pragma once

#include "platform/task.h"
#include "x11_selection_worker.h"

#include <QThread>

namespace nivora::linuxdesktop {

// The thread of the selection worker. Made and used on the main thread.
class X11SelectionThread final
{
public:
    // Waits until the worker is connected, for at most a second.
    explicit X11SelectionThread(const QByteArray &displayName);
    // Waits for the thread, for at most a second, half of which a clipboard manager
    // has to take over what is on the clipboard. A worker that hangs longer is left
    // to the end of the process.
    ~X11SelectionThread();
    X11SelectionThread(const X11SelectionThread &) = delete;
    X11SelectionThread &operator=(const X11SelectionThread &) = delete;

    bool isValid() const { return m_state->valid; }

    // Rises with each change of the clipboard. Changes of our own are counted by
    // who makes them, so that the count is right when the call returns.
    std::atomic<quint64> &clipboardChanges() { return m_state->changes; }

    // Runs `work` on the worker, after everything that was posted before it.
    void post(std::function<void(X11SelectionWorker &)> work);

    // Asks the worker for something, with one of its operations that take a
    // deadline and a promise. The time until the worker gets to it counts.
    template<typename Result>
    platform::Task ask(void (X11SelectionWorker::*operation)(QDeadlineTimer,
                                                             X11SelectionWorker::Promise<Result>),
                       std::chrono::milliseconds deadline, std::function<void(Result)> done)
    {
        auto promise = std::make_shared<QPromise<Result>>();
        promise->start();
        auto future = promise->future();
        const QDeadlineTimer until(deadline, Qt::PreciseTimer);
        post([operation, until, promise = std::move(promise)](X11SelectionWorker &worker) mutable {
            // Whoever asked may have gone.
            if (!promise->isCanceled())
                (worker.*operation)(until, std::move(promise));
        });
        return platform::whenFinished<Result>(std::move(future), std::move(done));
    }

private:
    struct State
    {
        QThread thread;
        QObject context; // lives in the thread
        std::unique_ptr<X11SelectionWorker> worker;
        std::atomic<bool> valid = false;
        std::atomic<quint64> changes = 0;
    };
    std::unique_ptr<State> m_state;
};

} // namespace nivora::linuxdesktop
