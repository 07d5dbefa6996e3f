#pragma once

#include "localcloud/answer.h"
#include "request_parser.h"

#include <QObject>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <functional>

namespace nivora::localcloud {

// One client: takes its requests in turn and plays the answers, step by step.
class Connection : public QObject
{
    Q_OBJECT

public:
    using Answerer = std::function<Answer(const Request &)>;

    Connection(QTcpSocket *socket, int number, qint64 bodyLimit, Answerer answerer,
               QObject *parent);

    int number() const { return m_number; }

Q_SIGNALS:
    void closed();

private:
    enum class Phase { Reading, Answering, Discarding };

    void read();
    void serve();
    void refuse();
    void begin(Answer answer);
    void playPrelude();
    void playBody();
    // Runs the steps from m_position on. True once all are done; false when one
    // of them waits or has ended the exchange.
    bool play(const std::vector<Step> &steps);
    void playLive();

    void sendHead();
    void sendBody(const QByteArray &bytes);
    void endBody();
    void write(const QByteArray &bytes);
    void reset();

    QTcpSocket *m_socket;
    QTimer m_pause;
    RequestParser m_parser;
    Answerer m_answerer;
    Answer m_answer;
    std::size_t m_position = 0;
    qint64 m_discarded = 0;
    int m_number;
    Phase m_phase = Phase::Reading;
    bool m_headSent = false;
    bool m_keepAlive = true;
    bool m_withoutBody = false;
};

} // namespace nivora::localcloud
