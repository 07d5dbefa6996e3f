#pragma once

#include "platform/http_client.h"

#include <memory>

namespace nivora::linuxdesktop {

class LoadableModule;

// Speaks HTTP by a module that is loaded for the first request and then stays. Where
// it cannot be loaded, every request fails and says why.
class LazyHttpClient final : public platform::HttpClient
{
public:
    // `module` is a file.
    explicit LazyHttpClient(const QString &module = defaultModule());
    ~LazyHttpClient() override;

    // Where an installation has it, seen from the program.
    static QString defaultModule();

    void prepare() override;
    platform::Task send(const platform::HttpRequest &request,
                        platform::HttpCallbacks callbacks) override;

private:
    platform::Task sendByModule(const platform::HttpRequest &request,
                                platform::HttpCallbacks callbacks);

    std::unique_ptr<LoadableModule> m_module;
    std::unique_ptr<HttpClient> m_client;
};

} // namespace nivora::linuxdesktop
