#include "support/watchdog.h"

#include "support/wait.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QUuid>

#include <algorithm>
#include <limits>

namespace nivora::test {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int answerBound = 10'000; // ms
constexpr unsigned long pause = 3;  // ms from one answer to the next question

} // namespace

Watchdog::Watchdog(const QString &busAddress, const QString &service, const QString &path)
    : m_thread(QThread::create([this, busAddress, service, path] {
        const auto name = QUuid::createUuid().toString();
        {
            const auto bus = QDBusConnection::connectToBus(busAddress, name);
            const auto question = QDBusMessage::createMethodCall(
                service, path, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
            while (!m_ended) {
                const auto asked = Clock::now();
                const auto answer = bus.call(question, QDBus::Block, answerBound);
                m_longest = std::max(m_longest, millisecondsBetween(asked, Clock::now()));
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
