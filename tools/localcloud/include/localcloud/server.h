#pragma once

#include "localcloud/answer.h"
#include "localcloud/request.h"

#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <deque>
#include <functional>

namespace nivora::localcloud {

// A loopback HTTP/1.1 server whose every answer can be scripted down to the
// single write. Runs on the event loop of the thread that made it.
//
// Each request takes the next answer of the queue; when the queue is empty the
// handler makes one; without a handler the answer is 501.
class Server : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<Answer(const Request &)>;

    static constexpr qint64 defaultBodyLimit = 8 * 1024 * 1024;

    explicit Server(QObject *parent = nullptr);
    ~Server() override;

    // Accepts connections on 127.0.0.1; port 0 takes any free one.
    bool listen(quint16 port = 0);
    void stopListening();
    // http://127.0.0.1:<port>, without a path.
    QUrl url() const;
    QString errorString() const { return m_listener.errorString(); }

    // An origin where every attempt to connect is refused. The port stays taken,
    // so that nobody else comes to listen there, while this server lives.
    QUrl refusedUrl();

    void enqueue(Answer answer) { m_queue.push_back(std::move(answer)); }
    void setHandler(Handler handler) { m_handler = std::move(handler); }
    // Larger bodies are answered with 413 and not kept. In bytes.
    void setBodyLimit(qint64 limit) { m_bodyLimit = limit; }
    void dropAnswers() { m_queue.clear(); }
    // A service that runs for long keeps no requests.
    void setRecording(bool recording) { m_recording = recording; }

    // Every complete request so far, in the order of arrival.
    const QList<Request> &requests() const { return m_requests; }
    // Answers of the queue that no request has taken yet.
    int pendingAnswers() const { return static_cast<int>(m_queue.size()); }
    int acceptedConnections() const { return m_accepted; }
    int openConnections() const { return m_open; }

Q_SIGNALS:
    // Emitted before an answer is chosen: one enqueued now is taken.
    void requestReceived(const nivora::localcloud::Request &request);
    // Either side has ended it.
    void connectionClosed(int connection);

private:
    void accept();
    Answer answerTo(const Request &request);

    QTcpServer m_listener;
    QTcpSocket m_refusing;
    Handler m_handler;
    std::deque<Answer> m_queue;
    QList<Request> m_requests;
    qint64 m_bodyLimit = defaultBodyLimit;
    bool m_recording = true;
    int m_accepted = 0;
    int m_open = 0;
};

} // namespace nivora::localcloud
