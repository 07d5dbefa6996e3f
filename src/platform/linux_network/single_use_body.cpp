#include "single_use_body.h"

#include <algorithm>

namespace nivora::linuxdesktop {

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

} // namespace nivora::linuxdesktop
