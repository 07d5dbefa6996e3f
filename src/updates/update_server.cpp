#include "updates/update_server.h"

#include "core/network_fault_text.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr qint64 maximumFeed = 4 * 1024 * 1024;
constexpr int maximumRedirects = 5;

bool isSameOrigin(const QUrl &one, const QUrl &other)
{
    constexpr auto rest =
        QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment;
    const int standard = one.scheme() == u"https" ? 443 : 80;
    return one.adjusted(rest | QUrl::RemovePort) == other.adjusted(rest | QUrl::RemovePort) &&
           one.port(standard) == other.port(standard);
}

class DocumentRequest final : public platform::Operation
{
public:
    DocumentRequest(platform::HttpClient &http, const QUrl &url, qint64 limit,
                    std::chrono::milliseconds timeLimit,
                    std::function<void(UpdateServer::Result)> done)
        : m_limit(limit)
        , m_done(std::move(done))
        , m_time(platform::delay(
              timeLimit, [this] { end(QCoreApplication::translate("NetworkFault", "请求超时")); }))
        // A redirect keeps scheme, host and port, or ends the request.
        , m_exchange(
              http.send({.url = url, .redirects = maximumRedirects},
                        {
                            .onHead = [this](const platform::HttpHead &head) { m_head = head; },
                            .onBytes = [this](const QByteArray &bytes) { onBytes(bytes); },
                            .onEnd = [this](const auto &failure) { onEnd(failure); },
                        }))
    {
    }

private:
    void onBytes(const QByteArray &bytes)
    {
        m_bytes += bytes.first(std::min(bytes.size(), m_limit - m_bytes.size()));
        if (m_bytes.size() == m_limit)
            end(document());
    }

    void onEnd(const std::optional<platform::HttpFailure> &failure)
    {
        if (failure && failure->fault == platform::NetworkFault::RedirectRefused)
            return end(UpdateServer::tr("更新服务器把请求转到了别处"));
        if (failure)
            return end(networkFaultText(*failure));
        end(document());
    }

    UpdateServer::Document document() const
    {
        return {m_head.url, m_bytes, m_head.header("Content-Type")};
    }

    void end(const UpdateServer::Result &result)
    {
        finish([&] { m_done(result); });
    }

    void stop() override
    {
        m_time.cancel();
        m_exchange.cancel();
    }

    qint64 m_limit;
    std::function<void(UpdateServer::Result)> m_done;
    QByteArray m_bytes;
    platform::HttpHead m_head;
    platform::Task m_time;
    platform::Task m_exchange;
};

} // namespace

UpdateServer::UpdateServer(platform::HttpClient &http, const QUrl &origin,
                           std::chrono::milliseconds timeLimit)
    : m_http(http)
    , m_origin(origin)
    , m_timeLimit(timeLimit)
{
}

QUrl UpdateServer::feedURL() const
{
    return m_origin.resolved(QUrl(u"/dist/appcast.xml"_s));
}

platform::Task UpdateServer::feed(std::function<void(Result)> done)
{
    return document(feedURL(), maximumFeed, std::move(done));
}

platform::Task UpdateServer::document(const QUrl &url, qint64 bytes,
                                      std::function<void(Result)> done)
{
    const QUrl target = feedURL().resolved(url);
    if (!isSameOrigin(m_origin, target)) {
        return platform::delay(0ms,
                               [done = std::move(done)] { done(tr("这个地址不在更新服务器上")); });
    }
    return platform::Task(new DocumentRequest(m_http, target, bytes, m_timeLimit, std::move(done)));
}

} // namespace nivora
