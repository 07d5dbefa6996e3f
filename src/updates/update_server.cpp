#include "updates/update_server.h"

#include "core/network_fault_text.h"

#include <QCoreApplication>
#include <QNetworkReply>

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
    DocumentRequest(QNetworkReply *reply, qint64 limit, std::chrono::milliseconds timeLimit,
                    std::function<void(UpdateServer::Result)> done)
        : m_reply(reply)
        , m_limit(limit)
        , m_done(std::move(done))
        , m_time(platform::delay(
              timeLimit, [this] { end(QCoreApplication::translate("NetworkFault", "请求超时")); }))
    {
        connect(reply, &QNetworkReply::readyRead, this, &DocumentRequest::read);
        connect(reply, &QNetworkReply::finished, this, &DocumentRequest::finished);
    }

private:
    void read()
    {
        m_bytes += m_reply->read(m_limit - m_bytes.size());
        if (m_bytes.size() == m_limit)
            end(document());
    }

    void finished()
    {
        const auto error = m_reply->error();
        if (error == QNetworkReply::TooManyRedirectsError ||
            error == QNetworkReply::InsecureRedirectError ||
            error == QNetworkReply::ProtocolUnknownError)
            return end(UpdateServer::tr("更新服务器把请求转到了别处"));
        // A status that tells of an error comes with a body all the same.
        const bool isClientStatus = error >= QNetworkReply::ContentAccessDenied &&
                                    error <= QNetworkReply::UnknownContentError &&
                                    error != QNetworkReply::ContentReSendError;
        const bool isServerStatus = error >= QNetworkReply::InternalServerError;
        if (error != QNetworkReply::NoError && !isClientStatus && !isServerStatus)
            return end(networkFaultText(*m_reply));
        m_bytes += m_reply->read(m_limit - m_bytes.size());
        end(document());
    }

    UpdateServer::Document document() const
    {
        return {m_reply->url(), m_bytes,
                m_reply->header(QNetworkRequest::ContentTypeHeader).toByteArray()};
    }

    void end(const UpdateServer::Result &result)
    {
        finish([&] { m_done(result); });
    }

    void stop() override
    {
        m_time.cancel();
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

    QNetworkReply *m_reply;
    qint64 m_limit;
    std::function<void(UpdateServer::Result)> m_done;
    platform::Task m_time;
    QByteArray m_bytes;
};

} // namespace

UpdateServer::UpdateServer(const QUrl &origin, std::chrono::milliseconds timeLimit)
    : m_origin(origin)
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
    QNetworkRequest request(target);
    // A redirect keeps scheme, host and port, or ends the request.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::SameOriginRedirectPolicy);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    return platform::Task(
        new DocumentRequest(m_network.get(request), bytes, m_timeLimit, std::move(done)));
}

} // namespace nivora
