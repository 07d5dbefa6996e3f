#pragma once

#include "localcloud/request.h"

#include <QByteArray>

namespace nivora::localcloud {

// Reads requests out of a connection's bytes, however they are cut.
class RequestParser
{
public:
    enum class State {
        Incomplete, // wants more bytes
        Complete,   // request() is ready; call next() to go on
        Rejected,   // status() says why; the connection cannot be read on
    };

    explicit RequestParser(qint64 bodyLimit)
        : m_bodyLimit(bodyLimit)
    {
    }

    State feed(const QByteArray &bytes);
    State state() const { return m_state; }
    int status() const { return m_status; }
    const Request &request() const { return m_request; }
    // The client waits for a go-ahead before it sends the body.
    bool takeContinueWish();
    // Forgets the complete request and looks for the next one in what is left.
    State next();

private:
    State advance();
    State reject(int status);
    bool parseHead(QByteArrayView head);
    bool parseRequestLine(QByteArrayView line);
    bool takeFraming();

    qint64 m_bodyLimit;
    QByteArray m_buffer;
    Request m_request;
    qint64 m_bodyLength = 0;
    State m_state = State::Incomplete;
    int m_status = 0;
    bool m_headDone = false;
    bool m_wantsContinue = false;
    bool m_isCurrentVersion = false;
};

} // namespace nivora::localcloud
