#include "platform/http_client.h"

namespace nivora::platform {

QByteArray HttpHead::header(QByteArrayView name) const
{
    for (const auto &[each, value] : headers) {
        if (each.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

} // namespace nivora::platform
