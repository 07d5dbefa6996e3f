#pragma once

#include "localcloud/answer.h"
#include "localcloud/request.h"

#include <QList>
#include <QString>

namespace nivora::localcloud {

class Router;

// The part of the cloud that tells of releases.
//
//   GET /dist/appcast.xml               the feed, the newest release first
//   GET /dist/notes/<version>/<language>.html   the notes, for some languages
//   GET /dist/notes/picture.png         a picture in them
class UpdateService
{
public:
    // `newest`: the version at the head of the feed.
    explicit UpdateService(const QString &newest = QStringLiteral("0.2.0"));

    // The router borrows the service.
    void addRoutes(Router &router);

private:
    struct Release
    {
        QString version;
        QString date;
    };

    Answer feed(const Request &request) const;

    QList<Release> m_releases;
};

} // namespace nivora::localcloud
