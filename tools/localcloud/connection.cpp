#include "connection.h"

#include "localcloud/live_answer.h"

#include <sys/socket.h>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

// A client whose body is refused may go on sending it before it reads the
// answer; so much is swallowed before it is cut off.
constexpr qint64 discardLimit = 64 * 1024 * 1024;

struct Reason
{
    int status;
    const char *phrase;
};
constexpr Reason reasons[] = {
    {200, "OK"},
    {204, "No Content"},
    {301, "Moved Permanently"},
    {302, "Found"},
    {303, "See Other"},
    {307, "Temporary Redirect"},
    {308, "Permanent Redirect"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {411, "Length Required"},
    {413, "Content Too Large"},
    {429, "Too Many Requests"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {505, "HTTP Version Not Supported"},
};

QByteArray reasonPhrase(int status)
{
    const auto found = std::ranges::find(reasons, status, &Reason::status);
    return found == std::end(reasons) ? "Status" : found->phrase;
}

template<typename... Cases>
struct Overloaded : Cases...
{
    using Cases::operator()...;
};

} // namespace

Connection::Connection(QTcpSocket *socket, int number, qint64 bodyLimit, Answerer answerer,
                       QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_pause(this)
    , m_parser(bodyLimit)
    , m_answerer(std::move(answerer))
    , m_number(number)
{
    m_socket->setParent(this);
    // Each write of an answer shall be a packet of its own.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] { m_headSent ? playBody() : playPrelude(); });
    connect(m_socket, &QTcpSocket::readyRead, this, &Connection::read);
    connect(m_socket, &QTcpSocket::disconnected, this, [this] {
        m_pause.stop();
        Q_EMIT closed();
    });
}

void Connection::read()
{
    const QByteArray bytes = m_socket->readAll();
    if (m_phase == Phase::Discarding) {
        m_discarded += bytes.size();
        if (m_discarded > discardLimit)
            reset();
        return;
    }
    m_parser.feed(bytes);
    if (m_phase == Phase::Reading)
        serve();
}

void Connection::serve()
{
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return;
    switch (m_parser.state()) {
    case RequestParser::State::Incomplete:
        if (m_parser.takeContinueWish())
            write("HTTP/1.1 100 Continue\r\n\r\n");
        break;
    case RequestParser::State::Rejected:
        refuse();
        break;
    case RequestParser::State::Complete: {
        const Request &request = m_parser.request();
        m_keepAlive = request.header("Connection").compare("close", Qt::CaseInsensitive) != 0;
        m_withoutBody = request.method == "HEAD";
        m_phase = Phase::Answering;
        begin(m_answerer(request));
        break;
    }
    }
}

void Connection::refuse()
{
    m_keepAlive = false;
    m_withoutBody = false;
    m_answer = Answer::error(m_parser.status(), u"the request cannot be read"_s);
    // The client reads this when it has sent what it wants to send, and closes.
    m_phase = Phase::Discarding;
    sendHead();
    sendBody(std::get<step::Send>(m_answer.steps.front()).bytes);
}

void Connection::begin(Answer answer)
{
    m_answer = std::move(answer);
    if (headerValue(m_answer.headers, "Connection").compare("close", Qt::CaseInsensitive) == 0)
        m_keepAlive = false;
    m_headSent = false;
    m_position = 0;
    if (m_answer.live)
        playLive();
    else
        playPrelude();
}

void Connection::playPrelude()
{
    if (!play(m_answer.prelude))
        return;
    sendHead();
    m_position = 0;
    playBody();
}

void Connection::playBody()
{
    if (play(m_answer.steps))
        endBody();
}

bool Connection::play(const std::vector<Step> &steps)
{
    while (m_position < steps.size()) {
        const bool goesOn = std::visit(Overloaded{[this](const step::Send &send) {
                                                      sendBody(send.bytes);
                                                      return true;
                                                  },
                                                  [this](const step::Wait &wait) {
                                                      m_pause.start(wait.duration);
                                                      return false;
                                                  },
                                                  [this](const step::Reset &) {
                                                      reset();
                                                      return false;
                                                  },
                                                  [this](const step::Close &) {
                                                      m_socket->disconnectFromHost();
                                                      return false;
                                                  },
                                                  [](const step::Silence &) { return false; }},
                                       steps[m_position++]);
        if (!goesOn)
            return false;
    }
    return true;
}

void Connection::playLive()
{
    auto *live = new LiveAnswer(this);
    connect(live, &LiveAnswer::started, this, [this](int status, const Headers &headers) {
        m_answer.status = status;
        m_answer.headers = headers;
        m_answer.framing = Answer::Framing::Chunked;
        sendHead();
    });
    connect(live, &LiveAnswer::sent, this, &Connection::sendBody);
    connect(live, &LiveAnswer::failed, this, &Connection::reset);
    connect(live, &LiveAnswer::finished, this, [this, live] {
        live->disconnect(this);
        live->deleteLater();
        endBody();
    });
    m_answer.live(*live);
}

void Connection::sendHead()
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_answer.status) + ' ' +
                      reasonPhrase(m_answer.status) + "\r\n";
    for (const auto &[name, value] : std::as_const(m_answer.headers))
        head += name + ": " + value + "\r\n";
    switch (m_answer.framing) {
    case Answer::Framing::Chunked:
        head += "Transfer-Encoding: chunked\r\n";
        break;
    case Answer::Framing::Length: {
        qint64 length = m_answer.missingBytes;
        for (const Step &each : m_answer.steps) {
            if (const auto *send = std::get_if<step::Send>(&each))
                length += send->bytes.size();
        }
        head += "Content-Length: " + QByteArray::number(length) + "\r\n";
        break;
    }
    case Answer::Framing::UntilClose:
        m_keepAlive = false;
        break;
    }
    if (!m_keepAlive && headerValue(m_answer.headers, "Connection").isNull())
        head += "Connection: close\r\n";
    m_headSent = true;
    write(head + "\r\n");
}

void Connection::sendBody(const QByteArray &bytes)
{
    if (bytes.isEmpty() || m_withoutBody)
        return; // an empty chunk would end the body
    if (m_answer.framing == Answer::Framing::Chunked)
        write(QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n");
    else
        write(bytes);
}

void Connection::endBody()
{
    if (m_answer.framing == Answer::Framing::Chunked && !m_withoutBody)
        write("0\r\n\r\n");
    if (!m_keepAlive) {
        m_socket->disconnectFromHost();
        return;
    }
    m_phase = Phase::Reading;
    m_parser.next();
    // From the event loop: a client that sends many requests at once does not
    // make this call itself over and over.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_phase == Phase::Reading)
                serve();
        },
        Qt::QueuedConnection);
}

void Connection::write(const QByteArray &bytes)
{
    // The client may have gone at any write before.
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return;
    m_socket->write(bytes);
    m_socket->flush();
}

void Connection::reset()
{
    // Closing with a linger time of zero makes the kernel send RST, not FIN.
    const linger none{1, 0};
    setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
               sizeof none);
    m_socket->abort();
}

} // namespace nivora::localcloud
