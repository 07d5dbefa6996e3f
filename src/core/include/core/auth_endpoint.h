#pragma once

#include "platform/http_client.h"

#include <QUrl>

#include <chrono>

namespace nivora {

// Where requests about the account go.
struct AuthEndpoint
{
    platform::HttpClient &http; // outlives every request under way
    QUrl baseURL;               // of the cloud; may have a path
    // Without a sign of life, a request is given up after this.
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
};

} // namespace nivora
