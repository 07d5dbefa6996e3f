#include "localcloud/upstream.h"

#include "localcloud/live_answer.h"

#include <QJsonDocument>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace nivora::localcloud {

using namespace Qt::Literals::StringLiterals;

namespace {

// A model may have to be loaded before its first word.
constexpr int patience = 300'000; // ms without a byte

QUrl completionsBelow(QUrl base)
{
    QString path = base.path();
    while (path.endsWith(u'/'))
        path.chop(1);
    if (!path.endsWith(u"/v1"))
        path += u"/v1"_s;
    base.setPath(path + u"/chat/completions"_s);
    return base;
}

// Holds the end marker of a stream with what may follow it.
constexpr qsizetype tailLength = 64;

// Passes one reply on. Belongs to the reply, which belongs to the answer.
class Relay : public QObject
{
public:
    Relay(QNetworkReply *reply, LiveAnswer &answer, const Headers &headers)
        : QObject(reply)
        , m_reply(reply)
        , m_answer(answer)
        , m_headers(headers)
    {
        connect(reply, &QNetworkReply::readyRead, this, &Relay::pass);
        connect(reply, &QNetworkReply::finished, this, &Relay::end);
    }

private:
    void pass()
    {
        if (!hasFinalStatus())
            return;
        if (!m_started)
            start();
        const QByteArray bytes = m_reply->readAll();
        m_tail = (m_tail + bytes).last(std::min(m_tail.size() + bytes.size(), tailLength));
        m_answer.send(bytes);
    }

    void start()
    {
        m_started = true;
        Headers headers = m_headers;
        headers.append({"Content-Type", m_reply->rawHeader("Content-Type")});
        m_answer.start(status(), headers);
    }

    void end()
    {
        if (hasFinalStatus())
            pass();
        // Every status of 400 and more is an error of the reply too. And on a
        // connection that has served before, Qt 6.4 may take a reset in the middle
        // of a stream for its end.
        const bool cut = m_reply->rawHeader("Content-Type").startsWith("text/event-stream") &&
                         !m_tail.contains("[DONE]");
        const bool broken = (m_reply->error() != QNetworkReply::NoError || cut) && status() < 400;
        if (broken && m_started) {
            m_answer.fail();
            return;
        }
        if (broken || !hasFinalStatus()) {
            m_answer.start(502, {{"Content-Type", "application/json"}});
            m_answer.send("{\"error\":{\"message\":\"the upstream server does not answer\"}}");
        }
        m_answer.finish();
    }

    int status() const
    {
        return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    // A redirect is not followed and not passed on.
    bool hasFinalStatus() const { return status() >= 200 && status() / 100 != 3; }

    QNetworkReply *m_reply;
    LiveAnswer &m_answer;
    Headers m_headers;
    QByteArray m_tail; // the last bytes passed on
    bool m_started = false;
};

} // namespace

Upstream::Upstream(const QUrl &base, const QString &model, const QByteArray &key)
    : m_url(completionsBelow(base))
    , m_model(model)
    , m_key(key)
{
}

Answer Upstream::forward(QJsonObject body, const Headers &headers)
{
    body.insert(u"model"_s, m_model);
    QNetworkRequest request(m_url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    // The key is for this server and for no other.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(patience);
    if (!m_key.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + m_key);

    Answer answer;
    answer.live = [this, request, headers,
                   bytes = QJsonDocument(body).toJson(QJsonDocument::Compact)](LiveAnswer &live) {
        QNetworkReply *reply = m_network.post(request, bytes);
        reply->setParent(&live);
        new Relay(reply, live, headers);
    };
    return answer;
}

} // namespace nivora::localcloud
