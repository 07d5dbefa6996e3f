#include "platform_linux_network/qt_http_client.h"

#include "single_use_body.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

using platform::HttpCallbacks;
using platform::HttpFailure;
using platform::HttpHead;
using platform::HttpRequest;
using platform::NetworkFault;

namespace {

NetworkFault faultOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
        return NetworkFault::CannotConnectToHost;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::NetworkSessionFailedError:
    // The connection broke before the answer and the body cannot be sent again.
    case QNetworkReply::ContentReSendError:
        return NetworkFault::NetworkConnectionLost;
    case QNetworkReply::HostNotFoundError:
        return NetworkFault::CannotFindHost;
    case QNetworkReply::TimeoutError:
    // Our own transfer time-out aborts the request and shows as a cancellation.
    case QNetworkReply::OperationCanceledError:
        return NetworkFault::TimedOut;
    case QNetworkReply::TemporaryNetworkFailureError:
    // An unreachable network or host ends here.
    case QNetworkReply::UnknownNetworkError:
        return NetworkFault::NotConnectedToInternet;
    case QNetworkReply::TooManyRedirectsError:
    case QNetworkReply::InsecureRedirectError:
        return NetworkFault::RedirectRefused;
    default:
        return NetworkFault::Other;
    }
}

// Whether the error is but the status in Qt's words.
bool tellsOfStatus(QNetworkReply::NetworkError error)
{
    const bool isClientStatus = error >= QNetworkReply::ContentAccessDenied &&
                                error <= QNetworkReply::UnknownContentError &&
                                error != QNetworkReply::ContentReSendError;
    return isClientStatus || error >= QNetworkReply::InternalServerError ||
           error == QNetworkReply::ProtocolInvalidOperationError;
}

// Whether an answer that ended with an error is complete all the same, with this
// many bytes of its body received. When a server answers and closes at once, Qt
// may see the end before the answer. It then delivers the answer, and after it
// the error of the second attempt that a SingleUseBody does not allow.
bool isWholeDespiteError(const QNetworkReply &reply, qint64 received)
{
    if (reply.error() != QNetworkReply::ContentReSendError)
        return false;
    const QVariant length = reply.header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid())
        return length.toLongLong() == received;
    return !reply.hasRawHeader("Transfer-Encoding");
}

QNetworkRequest qtRequest(const HttpRequest &request)
{
    QNetworkRequest result(request.url);
    for (const auto &[name, value] : request.headers)
        result.setRawHeader(name, value);
    // The header itself is Qt's: it is freed with the reply, and not overwritten.
    if (!request.bearer.isEmpty())
        result.setRawHeader("Authorization"_ba, "Bearer " + *request.bearer);
    if (request.body) {
        result.setHeader(QNetworkRequest::ContentLengthHeader, request.body->size());
        // Sends the body as it is read, so that it is read once.
        result.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    }
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        request.redirects > 0 ? QNetworkRequest::SameOriginRedirectPolicy
                                              : QNetworkRequest::ManualRedirectPolicy);
    result.setMaximumRedirectsAllowed(request.redirects);
    result.setTransferTimeout(int(request.silence.count()));
    return result;
}

QNetworkReply *start(QNetworkAccessManager &network, const HttpRequest &request)
{
    const QNetworkRequest sent = qtRequest(request);
    if (!request.body) {
        return request.method == "GET" ? network.get(sent)
                                       : network.sendCustomRequest(sent, request.method);
    }
    auto *body = new SingleUseBody(*request.body);
    // As a method of the caller's own, for which Qt makes up no content type.
    QNetworkReply *reply = network.sendCustomRequest(sent, request.method, body);
    body->setParent(reply);
    return reply;
}

class Exchange final : public platform::Operation
{
public:
    Exchange(QNetworkReply *reply, bool followsRedirects, HttpCallbacks callbacks)
        : m_reply(reply)
        , m_followsRedirects(followsRedirects)
        , m_callbacks(std::move(callbacks))
    {
        connect(reply, &QNetworkReply::metaDataChanged, this, [this] {
            // Of a redirect that is followed there is no word.
            if (!m_followsRedirects || status() < 300 || status() > 399)
                deliverHead();
        });
        connect(reply, &QNetworkReply::readyRead, this, [this] {
            if (deliverHead())
                deliverBytes();
        });
        connect(reply, &QNetworkReply::finished, this, &Exchange::onFinished);
    }

private:
    int status() const
    {
        return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    // False when nothing more is wanted.
    bool deliverHead()
    {
        if (m_hasHead || status() == 0)
            return true;
        m_hasHead = true;
        const HttpHead head{status(), m_reply->url(), m_reply->rawHeaderPairs()};
        return deliver([&] { m_callbacks.onHead(head); });
    }

    bool deliverBytes()
    {
        const QByteArray bytes = m_reply->isOpen() ? m_reply->readAll() : QByteArray();
        m_received += bytes.size();
        return bytes.isEmpty() || deliver([&] { m_callbacks.onBytes(bytes); });
    }

    void onFinished()
    {
        if (deliverHead() && deliverBytes())
            finish([this, failure = failure()] { m_callbacks.onEnd(failure); });
    }

    std::optional<HttpFailure> failure() const
    {
        const auto error = m_reply->error();
        if (error == QNetworkReply::NoError || (m_hasHead && tellsOfStatus(error)) ||
            (m_hasHead && isWholeDespiteError(*m_reply, m_received)))
            return std::nullopt;
        // What redirects to another protocol.
        if (error == QNetworkReply::ProtocolUnknownError && m_followsRedirects && m_hasHead)
            return HttpFailure{NetworkFault::RedirectRefused, m_reply->errorString()};
        return HttpFailure{faultOf(error), m_reply->errorString()};
    }

    void stop() override
    {
        m_reply->disconnect(this);
        m_reply->deleteLater(); // which aborts it
    }

    QNetworkReply *m_reply;
    bool m_followsRedirects;
    HttpCallbacks m_callbacks;
    qint64 m_received = 0; // bytes of the answer's body
    bool m_hasHead = false;
};

} // namespace

QtHttpClient::QtHttpClient()
    : m_network(std::make_unique<QNetworkAccessManager>())
{
}

QtHttpClient::~QtHttpClient() = default;

platform::Task QtHttpClient::send(const HttpRequest &request, HttpCallbacks callbacks)
{
    return platform::Task(
        new Exchange(start(*m_network, request), request.redirects > 0, std::move(callbacks)));
}

} // namespace nivora::linuxdesktop
