#pragma once

#include <QUrl>

#include <chrono>

class QNetworkAccessManager;

namespace nivora {

// Where requests about the account go.
struct AuthEndpoint
{
    QNetworkAccessManager &session; // outlives every request under way
    QUrl baseURL;                   // of the cloud; may have a path
    // Without a sign of life, a request is given up after this.
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
};

} // namespace nivora
