#pragma once

#include "platform/secret.h"
#include "platform/task.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace nivora::platform {

// Why the network gave no answer, or not all of it, told apart as far as the retry
// policy and the messages need it.
enum class NetworkFault {
    TimedOut,
    CannotConnectToHost,
    NotConnectedToInternet,
    NetworkConnectionLost,
    CannotFindHost,
    RedirectRefused, // more redirects than allowed, or one to another origin
    Other,
};

struct HttpFailure
{
    NetworkFault fault = NetworkFault::Other;
    QString description; // in the library's words
};

using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

struct HttpRequest
{
    QByteArray method = "GET";
    QUrl url;
    // A value must not hold control characters.
    HttpHeaders headers = {};
    // Signs the request; empty: it goes unsigned. No control characters either.
    SecretBytes bearer = {};
    // Absent: none. One that is empty is sent with its length.
    std::optional<QByteArray> body = {};
    // Given up after this without a sign of life; zero: never.
    std::chrono::milliseconds silence{};
    // How many redirects are followed, all of them within scheme, host and port. With
    // none, the answer that redirects is the answer.
    int redirects = 0;
};

// What comes before an answer's body.
struct HttpHead
{
    int status = 0; // as the server gives it
    QUrl url;       // after redirects
    HttpHeaders headers = {};

    // The value; of a header that came repeatedly, all values with commas between.
    // Empty: there is none. Case does not count in names.
    QByteArray header(QByteArrayView name) const;
};

struct HttpCallbacks
{
    // At most once, before all bytes.
    std::function<void(const HttpHead &)> onHead;
    // The next bytes of the body, whatever the status. Never empty.
    std::function<void(const QByteArray &)> onBytes;
    // The terminal result: absent when the whole answer has come, whatever its status.
    std::function<void(const std::optional<HttpFailure> &)> onEnd;
};

// The web's protocol. A server of TLS has to prove who it is. Nothing is kept on disk.
// Main thread only.
class HttpClient
{
public:
    virtual ~HttpClient() = default;

    // Gets ready in the background for a first request that may come.
    virtual void prepare() {}

    // Makes the request once: whether it is repeated is the caller's decision alone.
    // All callbacks are set. Dropping the task closes the connection that is in use.
    virtual Task send(const HttpRequest &request, HttpCallbacks callbacks) = 0;
};

// What the module of a client gives.
using MakeHttpClient = HttpClient *(*)(); // owned by the caller

} // namespace nivora::platform
