#pragma once

#include <QUrl>

namespace nivora {

// Where the deployment that this build is for has its services.
struct Deployment
{
    QUrl cloudEndpoint;  // origin of the cloud service
    QUrl updateEndpoint; // origin of the update feed
    QUrl website;        // the product's web site, for the user's browser
};

} // namespace nivora
