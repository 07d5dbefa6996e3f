#include "core/endpoint_address.h"

#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

AddressProblem addressProblem(const QString &address)
{
    // As text: a host before its port reads like a scheme.
    const bool isWeb = address.startsWith(u"https://"_s, Qt::CaseInsensitive) ||
                       address.startsWith(u"http://"_s, Qt::CaseInsensitive);
    if (!isWeb)
        return AddressProblem::NoScheme;
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return AddressProblem::NoHost;
    QString path = url.path();
    while (path.endsWith(u'/'))
        path.chop(1);
    return path.endsWith(u"/v1"_s) ? AddressProblem::EndsInVersion : AddressProblem::None;
}

} // namespace nivora
