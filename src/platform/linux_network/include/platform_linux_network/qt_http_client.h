#pragma once

#include "platform/http_client.h"

#include <memory>

class QNetworkAccessManager;

namespace nivora::linuxdesktop {

// HTTP by Qt's network module. Outlives the tasks that it gave.
class QtHttpClient final : public platform::HttpClient
{
public:
    QtHttpClient();
    ~QtHttpClient() override;

    platform::Task send(const platform::HttpRequest &request,
                        platform::HttpCallbacks callbacks) override;

private:
    std::unique_ptr<QNetworkAccessManager> m_network;
};

} // namespace nivora::linuxdesktop
