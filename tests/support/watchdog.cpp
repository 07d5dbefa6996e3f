#include "support/watchdog.h"

#include "support/wait.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QUuid>

#include <algorithm>
#include <limits>
#include <utility>

#include <unistd.h>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int answerBound = 10'000; // ms
// From one answer to the next question: a stall may be by so much longer than the
// silence that it makes.
constexpr unsigned long pause = 10; // ms
// Of a silence that others have had so great a part in, nobody knows whose it is.
constexpr double greatestShareOfOthers = 0.2;

// For how long a thread has waited for a processor so far, in milliseconds.
double timeInTheQueue(const QString &thread)
{
    QFile file(thread + u"/schedstat"_s);
    // Nanoseconds on the processor, nanoseconds in the queue, turns.
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toDouble() / 1e6 : 0;
}

// For how long the processors of this machine have stood still so far because its host
// gave them to another, in milliseconds. No thread's own account holds that.
double timeStolen()
{
    QFile file(u"/proc/stat"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    // In ticks: user, nice, system, idle, iowait, irq, softirq, steal.
    const double ticks = file.readLine().simplified().split(' ').value(8).toDouble();
    return ticks * 1000 / double(sysconf(_SC_CLK_TCK));
}

// Of this thread and all of these processes.
double timeInTheQueue(const std::vector<qint64> &processes)
{
    double sum = timeStolen() + timeInTheQueue(u"/proc/thread-self"_s);
    for (const qint64 process : processes) {
        const auto folder = u"/proc/%1/task"_s.arg(process);
        const auto threads = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &thread : threads)
            sum += timeInTheQueue(folder + u'/' + thread);
    }
    return sum;
}

// How often these processes have waited for the disk so far, to get what they have mapped.
qint64 waitsForTheDisk(const std::vector<qint64> &processes)
{
    qint64 sum = 0;
    for (const qint64 process : processes) {
        QFile file(u"/proc/%1/stat"_s.arg(process));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        // Behind the name, which may hold blanks: the state, and the major faults as the
        // tenth field from there.
        const QByteArray line = file.readAll();
        sum += line.sliced(line.lastIndexOf(')') + 1).simplified().split(' ').value(9).toLongLong();
    }
    return sum;
}

} // namespace

Watchdog::Watchdog(const QString &busAddress, const QString &service, const QString &path,
                   std::vector<qint64> processes)
    : m_thread(QThread::create([=, this] {
        const auto name = QUuid::createUuid().toString();
        watch(name, busAddress, service, path, processes);
        QDBusConnection::disconnectFromBus(name);
    }))
{
    m_thread->start();
}

Watchdog::~Watchdog()
{
    m_ended = true;
    m_thread->wait();
}

void Watchdog::watch(const QString &name, const QString &busAddress, const QString &service,
                     const QString &path, std::vector<qint64> processes)
{
    const auto bus = QDBusConnection::connectToBus(busAddress, name);
    if (!bus.isConnected())
        return;
    const auto question = QDBusMessage::createMethodCall(
        service, path, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
    const QDBusReply<uint> daemon = bus.interface()->servicePid(u"org.freedesktop.DBus"_s);
    processes.push_back(daemon.value());
    const auto begin = Clock::now();
    for (; !m_ended; ++m_questions) {
        const double queuedBefore = timeInTheQueue(processes);
        const qint64 readsBefore = waitsForTheDisk(processes);
        const auto asked = Clock::now();
        const auto answer = bus.call(question, QDBus::Block, answerBound);
        const double took = millisecondsBetween(asked, Clock::now());
        // A program that ends leaves its last question without an answer.
        const bool isAnswered = answer.type() == QDBusMessage::ReplyMessage;
        m_answers += isAnswered;
        if (isAnswered || took >= answerBound) {
            const double queued = timeInTheQueue(processes) - queuedBefore;
            note({took - queued, millisecondsBetween(begin, Clock::now()),
                  queued > greatestShareOfOthers * took ||
                      waitsForTheDisk(processes) != readsBefore});
        }
        QThread::msleep(pause);
    }
}

void Watchdog::note(const Stall &silence)
{
    const QMutexLocker lock(&m_mutex);
    if (!silence.isDoubtful) {
        m_longest = std::max(m_longest, silence.length);
        m_longestSinceTaken = std::max(m_longestSinceTaken, silence.length);
    }
    if (silence.length >= shortestStall)
        m_stalls.push_back(silence);
}

double Watchdog::takeLongestSilence()
{
    // What is being asked now may be the longest.
    const int next = m_questions + 2;
    while (m_questions < next && m_thread->isRunning())
        QThread::msleep(1);
    const QMutexLocker lock(&m_mutex);
    const double longest = std::exchange(m_longestSinceTaken, 0);
    return m_answers > 0 ? longest : std::numeric_limits<double>::infinity();
}

double Watchdog::longestSilence() const
{
    const QMutexLocker lock(&m_mutex);
    return m_longest;
}

std::vector<Watchdog::Stall> Watchdog::stalls() const
{
    const QMutexLocker lock(&m_mutex);
    return m_stalls;
}

} // namespace nivora::test
