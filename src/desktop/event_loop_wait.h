#pragma once

#include "platform/task.h"

#include <QEventLoop>

#include <chrono>
#include <functional>
#include <optional>

namespace nivora {

// The waits of a capture: turns of the event loop, so that timers and key events
// go on, for a bounded time. Used by the capture alone.

inline void runEventLoop(std::chrono::milliseconds span)
{
    QEventLoop loop;
    const platform::Task end = platform::delay(span, [&loop] { loop.quit(); });
    loop.exec();
}

// Starts an operation and gives its result, absent when `bound` passes first.
template<typename Result>
std::optional<Result>
awaitResult(std::chrono::milliseconds bound,
            const std::function<platform::Task(std::function<void(Result)>)> &start)
{
    QEventLoop loop;
    std::optional<Result> answer;
    const platform::Task operation = start([&](Result result) {
        answer = std::move(result);
        loop.quit();
    });
    const platform::Task end = platform::delay(bound, [&loop] { loop.quit(); });
    loop.exec();
    return answer;
}

} // namespace nivora
