#pragma once

#include <QByteArray>
#include <QIODevice>

namespace nivora::linuxdesktop {

// A request body that can be read once. When a connection breaks before the
// answer, Qt sends the request again by itself, up to three times and at once,
// unless the body cannot be rewound. A request costs the user money, so how often
// it is made is the caller's decision alone.
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

} // namespace nivora::linuxdesktop
