#include "platform_linux/lazy_http_client.h"

#include "loadable_module.h"

#include <QCoreApplication>

namespace nivora::linuxdesktop {

using platform::HttpCallbacks;
using platform::HttpFailure;
using platform::HttpHead;
using platform::HttpRequest;
using platform::NetworkFault;

namespace {

// A request that is made when the module is there.
class PendingExchange final : public platform::Operation
{
public:
    using Send = std::function<platform::Task(HttpCallbacks)>;

    PendingExchange(LoadableModule &module, Send send, HttpCallbacks callbacks)
        : m_callbacks(std::move(callbacks))
        , m_loading(module.load([this, send = std::move(send)] { m_exchange = send(passOn()); }))
    {
    }

private:
    HttpCallbacks passOn()
    {
        return {
            .onHead = [this](const HttpHead &head) { deliver([&] { m_callbacks.onHead(head); }); },
            .onBytes =
                [this](const QByteArray &bytes) { deliver([&] { m_callbacks.onBytes(bytes); }); },
            .onEnd =
                [this](const std::optional<HttpFailure> &failure) {
                    finish([&] { m_callbacks.onEnd(failure); });
                },
        };
    }

    void stop() override
    {
        m_loading.cancel();
        m_exchange.cancel();
    }

    HttpCallbacks m_callbacks;
    platform::Task m_loading;
    platform::Task m_exchange;
};

} // namespace

QString LazyHttpClient::defaultModule()
{
    return QCoreApplication::applicationDirPath() + u'/' + QStringLiteral(NIVORA_NETWORK_MODULE);
}

LazyHttpClient::LazyHttpClient(const QString &module)
    : m_module(std::make_unique<LoadableModule>(module, "network"))
{
}

LazyHttpClient::~LazyHttpClient() = default;

void LazyHttpClient::prepare()
{
    m_module->prepare();
}

platform::Task LazyHttpClient::send(const HttpRequest &request, HttpCallbacks callbacks)
{
    if (m_client)
        return m_client->send(request, std::move(callbacks));
    return platform::Task(new PendingExchange(
        *m_module,
        [this, request](HttpCallbacks passedOn) {
            return sendByModule(request, std::move(passedOn));
        },
        std::move(callbacks)));
}

// Once it has been read from the disk.
platform::Task LazyHttpClient::sendByModule(const HttpRequest &request, HttpCallbacks callbacks)
{
    if (!m_client) {
        if (const auto make = m_module->resolve<platform::MakeHttpClient>("nivoraMakeHttpClient"))
            m_client.reset(make());
    }
    if (m_client)
        return m_client->send(request, std::move(callbacks));
    return platform::delay({}, [this, onEnd = std::move(callbacks.onEnd)] {
        onEnd(HttpFailure{NetworkFault::Other, m_module->errorString()});
    });
}

} // namespace nivora::linuxdesktop
