#pragma once

#include "localcloud/request.h"

#include <QObject>

namespace nivora::localcloud {

// An answer that is made while it is being sent. It belongs to its connection
// and is gone as soon as the client is: who fills it makes itself a child of it,
// or keeps a QPointer.
class LiveAnswer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Sends status and headers; the body follows in chunks.
    void start(int status, const Headers &headers) { Q_EMIT started(status, headers); }
    void send(const QByteArray &bytes) { Q_EMIT sent(bytes); }
    void finish() { Q_EMIT finished(); }
    // Cuts the connection, so that the client cannot take the body for complete.
    void fail() { Q_EMIT failed(); }

Q_SIGNALS:
    void started(int status, const nivora::localcloud::Headers &headers);
    void sent(const QByteArray &bytes);
    void finished();
    void failed();
};

} // namespace nivora::localcloud
