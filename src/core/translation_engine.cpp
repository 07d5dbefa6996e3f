#include "core/translation_engine.h"

#include "core/event_stream.h"
#include "core/prompts.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto retryPause = 400ms;
constexpr auto translationIdHeader = "X-Translation-Id";
constexpr int maximumRedirects = 5;

QUrl appendPath(const QUrl &base, QStringView path)
{
    QUrl url = base;
    QString whole = base.path();
    if (!whole.endsWith(u'/'))
        whole += u'/';
    whole += path;
    url.setPath(whole);
    return url;
}

bool isSameOrigin(const QUrl &one, const QUrl &other)
{
    const int standard = one.scheme() == u"https" ? 443 : 80;
    return one.scheme() == other.scheme() && one.host() == other.host() &&
           one.port(standard) == other.port(standard);
}

// A value with a control character would end the header line and start another.
bool isHeaderValue(const QByteArray &value)
{
    return std::ranges::none_of(value,
                                [](char c) { return static_cast<uchar>(c) < 0x20 || c == 0x7F; });
}

QJsonObject userEndpointBody(const QString &prompt, const QString &model)
{
    return {
        {u"model"_s, model},
        {u"messages"_s, QJsonArray{QJsonObject{{u"role"_s, u"user"_s}, {u"content"_s, prompt}}}},
        {u"temperature"_s, 0},
        {u"stream"_s, true},
        {u"stream_options"_s, QJsonObject{{u"include_usage"_s, true}}},
    };
}

// A request body that can be read once. When a connection breaks before the
// answer, Qt sends the request again by itself, up to three times and at once,
// unless the body cannot be rewound. A request costs the user money, so how often
// it is made is decided here alone.
class SingleUseBody final : public QIODevice
{
public:
    explicit SingleUseBody(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    bool atEnd() const override { return m_position == m_bytes.size(); }
    qint64 bytesAvailable() const override
    {
        return m_bytes.size() - m_position + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 limit) override
    {
        const qint64 size = std::min(limit, m_bytes.size() - m_position);
        if (size == 0)
            return limit == 0 ? 0 : -1;
        std::copy_n(m_bytes.constData() + m_position, size, data);
        m_position += size;
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_position = 0;
};

// One streaming request with its one retry.
class StreamOperation final : public platform::Operation
{
public:
    StreamOperation(QNetworkAccessManager &session, QNetworkRequest request, QByteArray body,
                    TranslationEngine::Callbacks callbacks)
        : m_session(session)
        , m_request(std::move(request))
        , m_body(std::move(body))
        , m_callbacks(std::move(callbacks))
    {
        m_request.setHeader(QNetworkRequest::ContentLengthHeader, m_body.size());
        send();
    }

    // Ends without a request, on the next turn of the event loop.
    StreamOperation(QNetworkAccessManager &session, const TranslationError &error,
                    TranslationEngine::Callbacks callbacks)
        : m_session(session)
        , m_callbacks(std::move(callbacks))
        , m_pause(platform::delay(0ms, [this, error] { end(error); }))
    {
    }

private:
    void send();
    void onMetaData();
    bool followRedirect();
    void onReadyRead();
    void onReplyFinished();
    bool onLine(QByteArrayView line);
    bool isWholeDespite(QNetworkReply::NetworkError error) const;
    void failOrRetry(NetworkFault fault, const QString &description);
    void end(const std::optional<TranslationError> &error);
    void dropReply();
    void stop() override;

    QNetworkAccessManager &m_session;
    QNetworkRequest m_request;
    QByteArray m_body;
    TranslationEngine::Callbacks m_callbacks;

    QNetworkReply *m_reply = nullptr;
    LineSplitter m_lines;
    qint64 m_received = 0;  // bytes of the answer's body
    platform::Task m_pause; // before the next attempt
    int m_redirects = 0;
    bool m_retried = false;
    bool m_accepted = false;  // a status from 200 to 299 has arrived
    bool m_delivered = false; // a piece has been given
    bool m_ended = false;     // no further line counts
};

void StreamOperation::send()
{
    auto *body = new SingleUseBody(m_body);
    m_reply = m_session.post(m_request, body);
    body->setParent(m_reply);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &StreamOperation::onMetaData);
    connect(m_reply, &QNetworkReply::readyRead, this, &StreamOperation::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, &StreamOperation::onReplyFinished);
}

void StreamOperation::onMetaData()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 0 || m_accepted)
        return;
    if ((status == 307 || status == 308) && followRedirect())
        return;
    if (status < 200 || status > 299)
        return end(TranslationError::http(status));
    m_accepted = true;
    const QString id = QString::fromUtf8(m_reply->rawHeader(translationIdHeader));
    if (!id.isEmpty() && m_callbacks.onTranslationId)
        deliver([&] { m_callbacks.onTranslationId(id); });
}

// Only the two statuses that keep method and body, and only within the origin:
// elsewhere the user's text, and the token, would reach a host that the user
// never named.
bool StreamOperation::followRedirect()
{
    const QUrl origin = m_request.url();
    const QUrl target = origin.resolved(QUrl::fromEncoded(m_reply->rawHeader("Location"_ba)));
    if (m_redirects == maximumRedirects || !isSameOrigin(origin, target))
        return false;
    ++m_redirects;
    m_request.setUrl(target);
    dropReply();
    m_pause = platform::delay(0ms, [this] { send(); });
    return true;
}

void StreamOperation::onReadyRead()
{
    if (!m_accepted || !m_reply)
        return;
    const QByteArray bytes = m_reply->readAll();
    m_received += bytes.size();
    m_lines.feed(bytes, [this](QByteArrayView line) { return onLine(line); });
    if (m_ended)
        end(m_delivered ? std::nullopt : std::optional(TranslationError::emptyResponse()));
}

// False when no further line is wanted.
bool StreamOperation::onLine(QByteArrayView line)
{
    if (!isRunning())
        return false;
    auto event = parseEventLine(line);
    if (!event)
        return true;
    if (event->done) {
        m_ended = true;
        return false;
    }
    if (event->content && !event->content->isEmpty()) {
        QString piece = std::move(*event->content);
        // A model that opens with blank lines must not open the panel with them.
        if (!m_delivered) {
            const auto first = std::ranges::find_if_not(piece, [](QChar c) { return c.isSpace(); });
            piece.remove(0, first - piece.begin());
            if (piece.isEmpty())
                return true;
        }
        m_delivered = true;
        if (!deliver([&] { m_callbacks.onPiece(piece); }))
            return false;
    }
    if (event->usage && m_callbacks.onUsage)
        return deliver([&] { m_callbacks.onUsage(*event->usage); });
    return true;
}

void StreamOperation::onReplyFinished()
{
    const auto error = m_reply->error();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!m_accepted && status >= 300)
        return end(TranslationError::http(status));
    if (error != QNetworkReply::NoError && !isWholeDespite(error))
        return failOrRetry(networkFault(error), m_reply->errorString());
    if (!m_accepted) {
        return end(TranslationError::network(QCoreApplication::translate(
            "TranslationError", "无效响应", "error: invalid response")));
    }
    m_lines.finish([this](QByteArrayView line) { return onLine(line); });
    if (isRunning())
        end(m_delivered ? std::nullopt : std::optional(TranslationError::emptyResponse()));
}

// When a server answers and closes at once, Qt may see the end before the answer.
// It then delivers the answer, and after it the error of the second attempt that
// the body does not allow.
bool StreamOperation::isWholeDespite(QNetworkReply::NetworkError error) const
{
    if (error != QNetworkReply::ContentReSendError || !m_accepted)
        return false;
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid())
        return length.toLongLong() == m_received;
    return !m_reply->hasRawHeader("Transfer-Encoding"_ba);
}

void StreamOperation::failOrRetry(NetworkFault fault, const QString &description)
{
    if (!m_accepted && !m_retried && TranslationError::isTransient(fault)) {
        m_retried = true;
        dropReply();
        m_pause = platform::delay(retryPause, [this] { send(); });
        return;
    }
    end(TranslationError::from(fault, description));
}

void StreamOperation::end(const std::optional<TranslationError> &error)
{
    finish([&] { m_callbacks.onFinished(error); });
}

void StreamOperation::dropReply()
{
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_reply = nullptr;
}

void StreamOperation::stop()
{
    dropReply();
    m_pause.cancel();
}

} // namespace

TranslationEngine::TranslationEngine()
{
    m_session.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
}

platform::Task TranslationEngine::translate(const QString &text, Language target,
                                            const TranslationOptions &options,
                                            const TranslationConfig &config, Callbacks callbacks)
{
    QNetworkRequest request(
        appendPath(config.apiBaseURL, config.cloud ? u"v1/translate" : u"v1/chat/completions"));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
    request.setRawHeader("Accept"_ba, "text/event-stream"_ba);
    // Sends the body as it is read, so that it is read once.
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    request.setTransferTimeout(int(config.requestTimeout.count()));
    // A key that was pasted with a line end is still the same key.
    const QByteArray token = config.apiToken.trimmed();
    if (!token.isEmpty()) {
        if (!isHeaderValue(token)) {
            const auto error = TranslationError::network(
                QCoreApplication::translate("TranslationError", "密钥含有无法发送的字符",
                                            "error: control characters in the API key"));
            return platform::Task(new StreamOperation(m_session, error, std::move(callbacks)));
        }
        request.setRawHeader("Authorization"_ba, "Bearer " + token);
    }

    const QJsonObject body =
        config.cloud
            ? translateBody(text, target, options, /*stream=*/true)
            : userEndpointBody(
                  PromptTemplate::render(config.translateTemplate,
                                         PromptTemplate::translateVariables(text, target, options)),
                  config.modelName);
    return platform::Task(new StreamOperation(m_session, std::move(request),
                                              QJsonDocument(body).toJson(QJsonDocument::Compact),
                                              std::move(callbacks)));
}

QJsonObject TranslationEngine::translateBody(const QString &text, Language target,
                                             const TranslationOptions &options, bool stream)
{
    QJsonObject body{
        {u"text"_s, text},
        {u"target"_s, rawValue(target)},
        {u"mode"_s, u"translate"_s},
        {u"stream"_s, stream},
    };
    if (!options.style.isEmpty())
        body[u"style"_s] = options.style;
    if (!options.background.isEmpty())
        body[u"background"_s] = options.background;
    QJsonArray glossary;
    for (const auto &[from, to] : options.matchedTerms(text, target))
        glossary.append(QJsonArray{from, to});
    if (!glossary.isEmpty())
        body[u"glossary"_s] = glossary;
    return body;
}

} // namespace nivora
