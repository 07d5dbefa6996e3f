#include "http_parts.h"

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

} // namespace nivora
