#pragma once

#include <QString>
#include <QThread>

#include <atomic>
#include <memory>

namespace nivora::test {

// Measures from outside for how long a program's main thread did not answer. A
// thread of its own puts one question after the other to an object of the program
// on the session bus; the answer to each comes from the program's main thread, so
// its round trip is the time for which that thread was busy, and a little more.
// Time in which the program or this thread were ready to run, and the machine was
// busy with others, is taken off: it says nothing about the program.
class Watchdog
{
public:
    // `path` is an object that the program's main thread has registered.
    Watchdog(const QString &busAddress, const QString &service, const QString &path,
             qint64 processId);
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    // Ends the watch: the longest silence since the start, in milliseconds.
    // Infinity when the program did not answer at all.
    double longestSilence();

private:
    std::atomic<bool> m_ended = false;
    double m_longest = 0; // the thread's until it has ended
    int m_answers = 0;    // likewise
    std::unique_ptr<QThread> m_thread;
};

} // namespace nivora::test
