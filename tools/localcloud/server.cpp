#include "localcloud/server.h"

#include "connection.h"

#include <QHostAddress>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

QUrl originAt(quint16 port)
{
    return QUrl(u"http://127.0.0.1:%1"_s.arg(port));
}

} // namespace

Server::Server(QObject *parent)
    : QObject(parent)
{
    connect(&m_listener, &QTcpServer::newConnection, this, &Server::accept);
}

Server::~Server()
{
    // While there is still a server that they may speak to.
    const auto connections = findChildren<Connection *>();
    for (Connection *connection : connections) {
        connection->disconnect(this);
        delete connection;
    }
}

bool Server::listen(quint16 port)
{
    return m_listener.listen(QHostAddress::LocalHost, port);
}

void Server::stopListening()
{
    m_listener.close();
}

QUrl Server::url() const
{
    return originAt(m_listener.serverPort());
}

QUrl Server::refusedUrl()
{
    if (m_refusing.state() != QAbstractSocket::BoundState)
        m_refusing.bind(QHostAddress::LocalHost, 0, QAbstractSocket::DontShareAddress);
    return originAt(m_refusing.localPort());
}

void Server::accept()
{
    while (QTcpSocket *socket = m_listener.nextPendingConnection()) {
        ++m_open;
        const int number = ++m_accepted;
        auto *connection = new Connection(
            socket, number, m_bodyLimit,
            [this, number](Request request) {
                request.connection = number;
                return answerTo(request);
            },
            this);
        connect(connection, &Connection::closed, this, [this, connection] {
            --m_open;
            connection->deleteLater();
            Q_EMIT connectionClosed(connection->number());
        });
    }
}

Answer Server::answerTo(const Request &request)
{
    if (m_recording)
        m_requests.append(request);
    Q_EMIT requestReceived(request);
    if (!m_queue.empty()) {
        Answer answer = std::move(m_queue.front());
        m_queue.pop_front();
        return answer;
    }
    if (m_handler)
        return m_handler(request);
    return Answer::error(501, u"no answer is prepared for this request"_s);
}

} // namespace nivora::localcloud
