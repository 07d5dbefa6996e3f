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

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int answerBound = 10'000; // ms
// From one answer to the next question: a stall may be by so much longer than the
// silence that it makes.
constexpr unsigned long pause = 10; // ms

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// For how long these threads have waited for a processor so far, in milliseconds.
double timeInTheQueue(const QStringList &threads)
{
    double sum = 0;
    for (const QString &thread : threads) {
        // Nanoseconds on the processor, nanoseconds in the queue, turns.
        sum += contents(thread + u"/schedstat"_s).split(' ').value(1).toDouble() / 1e6;
    }
    return sum;
}

// All that a question and its answer pass: this thread, the bus, the thread by which
// the program speaks to the bus, and its main thread.
QStringList threadsOnTheWay(const QDBusConnection &bus, qint64 processId)
{
    const QDBusReply<uint> daemon = bus.interface()->servicePid(u"org.freedesktop.DBus"_s);
    const QString folder = u"/proc/%1/task/"_s.arg(processId);
    QStringList all{u"/proc/thread-self"_s, u"/proc/%1"_s.arg(daemon.value()),
                    folder + QString::number(processId)};
    const auto threads = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        if (contents(folder + thread + u"/comm"_s).startsWith("QDBusConnection"))
            all << folder + thread;
    }
    return all;
}

} // namespace

Watchdog::Watchdog(const QString &busAddress, const QString &service, const QString &path,
                   qint64 processId)
    : m_thread(QThread::create([=, this] {
        const auto name = QUuid::createUuid().toString();
        watch(name, busAddress, service, path, processId);
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
                     const QString &path, qint64 processId)
{
    const auto bus = QDBusConnection::connectToBus(busAddress, name);
    if (!bus.isConnected())
        return;
    const auto question = QDBusMessage::createMethodCall(
        service, path, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
    const QStringList threads = threadsOnTheWay(bus, processId);
    const auto begin = Clock::now();
    for (; !m_ended; ++m_questions) {
        const double queuedBefore = timeInTheQueue(threads);
        const auto asked = Clock::now();
        const auto answer = bus.call(question, QDBus::Block, answerBound);
        const double took = millisecondsBetween(asked, Clock::now());
        // A program that ends leaves its last question without an answer.
        const bool isAnswered = answer.type() == QDBusMessage::ReplyMessage;
        m_answers += isAnswered;
        if (isAnswered || took >= answerBound)
            note({took - (timeInTheQueue(threads) - queuedBefore),
                  millisecondsBetween(begin, Clock::now())});
        QThread::msleep(pause);
    }
}

void Watchdog::note(const Stall &silence)
{
    const QMutexLocker lock(&m_mutex);
    m_longest = std::max(m_longest, silence.length);
    m_longestSinceTaken = std::max(m_longestSinceTaken, silence.length);
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
