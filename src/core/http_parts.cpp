#include "http_parts.h"

#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

QUrl appendPath(const QUrl &base, QStringView path)
{
    QUrl url = base;
    QString whole = base.path();
    if (!whole.endsWith(u'/'))
        whole += u'/';
    whole += path;
    url.setPath(whole);
    return url;
}

bool isHeaderValue(const QByteArray &value)
{
    return std::ranges::none_of(value,
                                [](char c) { return static_cast<uchar>(c) < 0x20 || c == 0x7F; });
}

void setBearer(QNetworkRequest &request, const platform::SecretBytes &token)
{
    request.setRawHeader("Authorization"_ba, "Bearer " + *token);
}

bool isWholeDespiteError(const QNetworkReply &reply, qint64 received)
{
    if (reply.error() != QNetworkReply::ContentReSendError)
        return false;
    const QVariant length = reply.header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid())
        return length.toLongLong() == received;
    return !reply.hasRawHeader("Transfer-Encoding");
}

SingleUseBody::SingleUseBody(const QByteArray &bytes)
    : m_bytes(bytes)
{
    open(QIODevice::ReadOnly);
}

qint64 SingleUseBody::readData(char *data, qint64 limit)
{
    const qint64 size = std::min(limit, m_bytes.size() - m_position);
    if (size == 0)
        return limit == 0 ? 0 : -1;
    std::copy_n(m_bytes.constData() + m_position, size, data);
    m_position += size;
    return size;
}

} // namespace nivora
