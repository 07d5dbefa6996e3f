#include "fuzz.h"

#include "atspi_element.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServer>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMutex>
#include <QSemaphore>
#include <QThread>

#include <cmath>

using namespace Qt::Literals::StringLiterals;
using namespace nivora;
using linuxdesktop::AtspiCalls;
using linuxdesktop::AtspiElement;

namespace {

// A program that answers each question with whatever comes next in the input:
// the right kind of answer with odd values, another kind, or an error.
class Liar final : public QDBusVirtualObject
{
public:
    void tellFrom(const QByteArray &bytes)
    {
        const QMutexLocker lock(&m_mutex);
        m_bytes = bytes;
        m_at = 0;
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QMutexLocker lock(&m_mutex);
        if (next() % 16 == 0)
            bus.send(message.createErrorReply(QDBusError::Failed, u"no"_s));
        else
            bus.send(message.createReply(message.member() == u"Get"_s
                                             ? QVariantList{QVariant::fromValue(QDBusVariant(
                                                   value(message.arguments().value(1).toString())))}
                                             : answer(message.member())));
        return true;
    }

private:
    int next() { return m_at < m_bytes.size() ? uint8_t(m_bytes[m_at++]) : 1; }

    int integer()
    {
        constexpr int edges[] = {0, 1, -1, 2147483647, -2147483647 - 1, 65536, 20, 10};
        const int choice = next();
        return choice < 64 ? edges[choice % 8] : choice - 100;
    }

    QString text()
    {
        const qsizetype count = next();
        const QByteArray taken = m_bytes.mid(m_at, count);
        m_at = std::min(m_at + count, m_bytes.size());
        return QString::fromUtf8(taken).remove(QChar(u'\0'));
    }

    QVariant anything()
    {
        switch (next() % 8) {
        case 0:
            return integer();
        case 1:
            return text();
        case 2:
            return QVariant::fromValue(QList<uint>{uint(integer()), uint(integer())});
        case 3:
            return QStringList{text(), text()};
        case 4:
            return QVariant::fromValue(QDBusObjectPath(u"/elsewhere"_s));
        case 5:
            return QVariant::fromValue(qint64(integer()) << 32);
        case 6:
            return std::nan("");
        default:
            return QVariant::fromValue(QList<uint>());
        }
    }

    QVariant value(const QString &property)
    {
        if (next() % 8 == 0)
            return anything();
        if (property == u"CharacterCount"_s || property == u"CaretOffset"_s)
            return integer();
        if (property == u"ToolkitName"_s)
            return QStringList{u"gtk"_s, u"Gecko"_s, u"Chromium"_s, text()}.at(next() % 4);
        return text();
    }

    QVariantList answer(const QString &method)
    {
        if (next() % 8 == 0)
            return {anything(), anything()};
        if (method == u"GetRole"_s)
            return {next() % 4 == 0 ? integer() : 61 + next() % 20};
        if (method == u"GetState"_s)
            return {QVariant::fromValue(QList<uint>{uint(next()) << 7 | 0x2001000u, uint(next())})};
        if (method == u"GetInterfaces"_s)
            return {QStringList{u"org.a11y.atspi.Text"_s, u"org.a11y.atspi.Component"_s,
                                u"org.a11y.atspi.EditableText"_s}};
        if (method == u"GetNSelections"_s)
            return {integer()};
        if (method == u"GetSelection"_s)
            return {integer(), integer()};
        if (method.endsWith("Extents"_L1))
            return {integer(), integer(), integer(), integer()};
        if (method == u"GetText"_s)
            return {text()};
        return {anything()};
    }

    QMutex m_mutex;
    QByteArray m_bytes;
    qsizetype m_at = 0;
};

// The liar lives in a thread of its own, at the other end of a private line.
class Line
{
public:
    Line()
    {
        QSemaphore ready;
        m_thread.reset(QThread::create([&] {
            QDBusServer server(u"unix:tmpdir=/tmp"_s);
            server.setAnonymousAuthenticationAllowed(true);
            QObject::connect(
                &server, &QDBusServer::newConnection, &server, [&](QDBusConnection bus) {
                    bus.registerVirtualObject(u"/element"_s, &liar, QDBusConnection::SubPath);
                    m_accepted.release();
                });
            m_address = server.address();
            ready.release();
            QEventLoop().exec();
        }));
        liar.moveToThread(m_thread.get()); // or it would be called in the thread that asks
        m_thread->start();
        ready.acquire();
        m_bus = QDBusConnection::connectToPeer(m_address, u"liar"_s);
        m_accepted.acquire();
    }

    QDBusConnection bus() const { return m_bus; }

    Liar liar;

private:
    std::unique_ptr<QThread> m_thread;
    QString m_address;
    QSemaphore m_accepted;
    QDBusConnection m_bus{u"none"_s};
};

} // namespace

// The bus library keeps what it has on the line when the process ends.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libdbus-1.so";
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    // For the whole run: the process ends while the liar still listens.
    static Line &line = *new Line;

    line.liar.tellFrom(fuzz::Input(data, size).rest());
    // Far above what any answer takes, on a busy machine too.
    AtspiCalls calls(line.bus(), QDeadlineTimer(20'000));
    AtspiElement element({QString(), u"/element"_s});
    if (element.inspect(calls) == AtspiElement::Answer::None)
        return 0;
    const platform::FocusedElement read = element.read(calls);
    fuzz::check(!calls.isOver(), "an element that answers is read in time");
    for (const auto &place : {read.selectedTextBounds, read.frame}) {
        fuzz::check(!place || (std::isfinite(place->x()) && std::isfinite(place->width()) &&
                               place->width() >= 0 && place->height() >= 0),
                    "a place is one on a screen");
    }
    return 0;
}
