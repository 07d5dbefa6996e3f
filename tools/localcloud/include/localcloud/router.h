#pragma once

#include "localcloud/answer.h"
#include "localcloud/request.h"

#include <functional>
#include <vector>

namespace nivora::localcloud {

// Finds the handler of a request by its exact path and method: 404 when nothing
// has the path, 405 when nothing takes the method there. Serves as a server's
// handler by handle().
class Router
{
public:
    using Handler = std::function<Answer(const Request &)>;

    void add(const QByteArray &method, const QByteArray &path, Handler handler);
    Answer handle(const Request &request) const;

private:
    struct Route
    {
        QByteArray method;
        QByteArray path;
        Handler handler;
    };
    std::vector<Route> m_routes;
};

} // namespace nivora::localcloud
