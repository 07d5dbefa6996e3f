#include "x11_selection_thread.h"

#include "platform/log.h"

#include <QSemaphore>

namespace nivora::linuxdesktop {

namespace {

constexpr int patienceMs = 1000;
constexpr std::chrono::milliseconds handOverBound{500};

} // namespace

X11SelectionThread::X11SelectionThread(const QByteArray &displayName)
    : m_state(std::make_unique<State>())
{
    State *state = m_state.get();
    state->thread.setObjectName(QLatin1StringView("selections"));
    state->context.moveToThread(&state->thread);
    state->thread.start();
    const auto ready = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        &state->context,
        [state, displayName, ready] {
            state->worker = std::make_unique<X11SelectionWorker>(displayName, state->changes);
            state->valid = state->worker->isValid();
            ready->release();
        },
        Qt::QueuedConnection);
    ready->tryAcquire(1, patienceMs);
}

X11SelectionThread::~X11SelectionThread()
{
    State *state = m_state.get();
    QMetaObject::invokeMethod(
        &state->context,
        [state] {
            state->worker->handOver(handOverBound, [state] {
                // Not from within the worker, which ends here.
                QMetaObject::invokeMethod(
                    &state->context,
                    [state] {
                        state->worker.reset();
                        state->thread.quit();
                    },
                    Qt::QueuedConnection);
            });
        },
        Qt::QueuedConnection);
    if (state->thread.wait(patienceMs))
        return;
    qCWarning(log::selection) << "the selection worker does not end";
    // The thread still uses all of this.
    static_cast<void>(m_state.release());
}

void X11SelectionThread::post(std::function<void(X11SelectionWorker &)> work)
{
    QMetaObject::invokeMethod(
        &m_state->context,
        [state = m_state.get(), work = std::move(work)] { work(*state->worker); },
        Qt::QueuedConnection);
}

} // namespace nivora::linuxdesktop
