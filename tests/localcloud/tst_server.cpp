// The scripted faults, seen from the other end of a plain socket.

#include "localcloud/event_stream.h"
#include "localcloud/server.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>

#include <cerrno>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace nivora::localcloud;
using namespace std::chrono_literals;

namespace {
class Client : public QTcpSocket
{
public:
    explicit Client(const Server &server)
    {
        connect(this, &QTcpSocket::readyRead, this, [this] { reads.append(readAll()); });
        connectToHost(server.url().host(), static_cast<quint16>(server.url().port()));
    }
    QByteArray received() const { return reads.join(); }

    QByteArrayList reads;
};

// A client that tells a reset from an orderly end, which QTcpSocket does not.
class BareClient
{
public:
    enum class End { None, Closed, Reset };

    explicit BareClient(const Server &server)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<quint16>(server.url().port()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    }
    ~BareClient() { close(m_socket); }
    Q_DISABLE_COPY_MOVE(BareClient)

    void write(const QByteArray &bytes) { send(m_socket, bytes.data(), bytes.size(), 0); }
    void read()
    {
        if (end != End::None)
            return;
        char buffer[4096];
        const ssize_t size = recv(m_socket, buffer, sizeof buffer, MSG_DONTWAIT);
        if (size > 0)
            received.append(buffer, size);
        else if (size == 0)
            end = End::Closed;
        else if (errno == ECONNRESET)
            end = End::Reset;
    }

    QByteArray received;
    End end = End::None;

private:
    int m_socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

constexpr auto get = "GET /a?b=c HTTP/1.1\r\nHost: x\r\nX-Empty:\r\nx-CASE: Value \r\n\r\n";

} // namespace

class TestServer : public QObject
{
    Q_OBJECT

    Server m_server;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void endsAsScripted_data()
    {
        QTest::addColumn<Step>("step");
        QTest::addColumn<int>("end");
        QTest::newRow("reset") << Step(step::Reset{}) << int(BareClient::End::Reset);
        QTest::newRow("close") << Step(step::Close{}) << int(BareClient::End::Closed);
        QTest::newRow("silence") << Step(step::Silence{}) << int(BareClient::End::None);
    }
    void endsAsScripted()
    {
        QFETCH(Step, step);
        QFETCH(int, end);
        const auto lasting = Answer::plain(200, "never", "text/plain");
        m_server.enqueue(eventStream({u"a"_s, u"b"_s, u"c"_s, u"d"_s}).cutAfter(3, step));
        m_server.enqueue(lasting);
        {
            BareClient client(m_server);
            client.write(get);
            QTRY_VERIFY((client.read(), client.received.contains(pieceEvent(u"c"_s))));
            if (end == int(BareClient::End::None)) {
                // A request behind an answer that never ends is never answered.
                client.write(get);
                Client other(m_server);
                QSignalSpy answered(&other, &QTcpSocket::readyRead);
                m_server.enqueue(lasting);
                other.write(get);
                QVERIFY(answered.wait());
                client.read();
            } else {
                QTRY_VERIFY((client.read(), client.end != BareClient::End::None));
            }
            QCOMPARE(int(client.end), end);
            QVERIFY(!client.received.contains(pieceEvent(u"d"_s)));
            QVERIFY(!client.received.contains("0\r\n\r\n"));
            QCOMPARE(m_server.pendingAnswers(), 1);
        }
        QTRY_COMPARE(m_server.openConnections(), 0);
        m_server.dropAnswers();
    }

    void splitsInsideCharacters()
    {
        m_server.enqueue(eventStream({u"日本"_s}).splitInsideCharacters(5ms));
        Client client(m_server);
        client.write(get);
        QTRY_VERIFY(client.received().endsWith("0\r\n\r\n"));
        int split = 0;
        for (const QByteArray &read : std::as_const(client.reads))
            split += !QString::fromUtf8(read).contains(u"日"_s) && read.contains('\xE6');
        QVERIFY(split > 0);
    }
};

QTEST_GUILESS_MAIN(TestServer)
#include "tst_server.moc"
