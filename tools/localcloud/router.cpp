#include "localcloud/router.h"

#include <QByteArrayList>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

void Router::add(const QByteArray &method, const QByteArray &path, Handler handler)
{
    m_routes.push_back({method, path, std::move(handler)});
}

Answer Router::handle(const Request &request) const
{
    QByteArrayList allowed;
    for (const Route &route : m_routes) {
        if (route.path != request.path)
            continue;
        if (route.method == request.method)
            return route.handler(request);
        allowed.append(route.method);
    }
    if (allowed.isEmpty())
        return Answer::error(404, u"there is nothing at this path"_s);
    return Answer::error(405, u"this path takes other methods"_s)
        .withHeader("Allow", allowed.join(", "));
}

} // namespace nivora::localcloud
