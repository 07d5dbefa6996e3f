#include "support/watchdog.h"

#include "support/wait.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QUuid>

#include <algorithm>
#include <limits>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int answerBound = 10'000; // ms
constexpr unsigned long pause = 3;  // ms from one answer to the next question

// For how long a thread has waited for a processor so far, in milliseconds.
double timeInTheQueue(const QString &thread)
{
    QFile file(thread + u"/schedstat"_s);
    // Nanoseconds on the processor, nanoseconds in the queue, turns.
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toDouble() / 1e6 : 0;
}

double timeInTheQueue(qint64 processId)
{
    double sum = timeInTheQueue(u"/proc/thread-self"_s);
    const auto folder = u"/proc/%1/task"_s.arg(processId);
    const auto threads = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto &thread : threads)
        sum += timeInTheQueue(folder + u'/' + thread);
    return sum;
}

} // namespace

Watchdog::Watchdog(const QString &busAddress, const QString &service, const QString &path,
                   qint64 processId)
    : m_thread(QThread::create([this, busAddress, service, path, processId] {
        const auto name = QUuid::createUuid().toString();
        {
            const auto bus = QDBusConnection::connectToBus(busAddress, name);
            const auto question = QDBusMessage::createMethodCall(
                service, path, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
            while (!m_ended) {
                const double queuedBefore = timeInTheQueue(processId);
                const auto asked = Clock::now();
                const auto answer = bus.call(question, QDBus::Block, answerBound);
                const double took = millisecondsBetween(asked, Clock::now());
                m_longest = std::max(m_longest, took - (timeInTheQueue(processId) - queuedBefore));
                if (answer.type() == QDBusMessage::ReplyMessage)
                    ++m_answers;
                QThread::msleep(pause);
            }
        }
        QDBusConnection::disconnectFromBus(name);
    }))
{
    m_thread->start();
}

Watchdog::~Watchdog()
{
    longestSilence();
}

double Watchdog::longestSilence()
{
    m_ended = true;
    m_thread->wait();
    return m_answers > 0 ? m_longest : std::numeric_limits<double>::infinity();
}

} // namespace nivora::test
