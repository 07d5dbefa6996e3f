#pragma once

#include "platform/secret.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <QUrl>

class QNetworkReply;
class QNetworkRequest;

namespace nivora {

// The base with the path put behind its own.
QUrl appendPath(const QUrl &base, QStringView path);

// Whether the value can be a header's: a control character would end the line
// and start another.
bool isHeaderValue(const QByteArray &value);

// Signs the request. The header itself is Qt's: it is freed with the reply, and not
// overwritten.
void setBearer(QNetworkRequest &request, const platform::SecretBytes &token);

// Whether an answer that ended with an error is complete all the same, with this
// many bytes of its body received. When a server answers and closes at once, Qt
// may see the end before the answer. It then delivers the answer, and after it
// the error of the second attempt that a SingleUseBody does not allow.
bool isWholeDespiteError(const QNetworkReply &reply, qint64 received);

// A request body that can be read once. When a connection breaks before the
// answer, Qt sends the request again by itself, up to three times and at once,
// unless the body cannot be rewound. A request costs the user money, so how often
// it is made is decided here alone.
class SingleUseBody final : public QIODevice
{
public:
    explicit SingleUseBody(const QByteArray &bytes);

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    bool atEnd() const override { return m_position == m_bytes.size(); }
    qint64 bytesAvailable() const override
    {
        return m_bytes.size() - m_position + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 limit) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_position = 0;
};

} // namespace nivora
