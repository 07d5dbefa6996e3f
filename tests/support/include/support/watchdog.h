#pragma once

#include <QMutex>
#include <QString>
#include <QThread>

#include <atomic>
#include <memory>
#include <vector>

namespace nivora::test {

// Measures from outside for how long a program's main thread did not answer. A
// thread of its own puts one question after the other to an object of the program
// on the session bus; the answer to each comes from the program's main thread, so
// its round trip is the time for which that thread was busy, and a little more.
//
// Time in which one of those concerned was ready to run, and the machine was busy
// with others, is taken off; where it is much, the silence counts as doubtful.
class Watchdog
{
public:
    struct Stall
    {
        double length = 0;     // milliseconds
        double sinceStart = 0; // its end, in milliseconds from the start of the watch
        bool isDoubtful = false;
    };
    static constexpr double shortestStall = 50; // milliseconds

    // `path` is an object that the program's main thread has registered. `processes`
    // are the program and those that it has to wait for.
    Watchdog(const QString &busAddress, const QString &service, const QString &path,
             std::vector<qint64> processes);
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    // The longest silence beyond doubt since the start or the last call, in
    // milliseconds.
    // Infinity when the program has never answered at all.
    double takeLongestSilence();
    double longestSilence() const; // of all
    // Every stall so far.
    std::vector<Stall> stalls() const;

private:
    void watch(const QString &name, const QString &busAddress, const QString &service,
               const QString &path, std::vector<qint64> processes);
    void note(const Stall &silence);

    mutable QMutex m_mutex; // guards the next three
    std::vector<Stall> m_stalls;
    double m_longest = 0;
    double m_longestSinceTaken = 0;

    std::atomic<int> m_answers = 0;
    std::atomic<int> m_questions = 0;
    std::atomic<bool> m_ended = false;
    std::unique_ptr<QThread> m_thread;
};

} // namespace nivora::test
