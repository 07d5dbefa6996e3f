#include "core/feedback_service.h"

#include "http_parts.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto timeout = 15s; // without any sign of life

QByteArray bodyOf(const FeedbackReport &report)
{
    QJsonObject body{
        {u"sourceText"_s, report.source},       {u"translation"_s, report.translation},
        {u"target"_s, rawValue(report.target)}, {u"reason"_s, report.reason},
        {u"comment"_s, report.comment},
    };
    if (!report.tid.isEmpty())
        body[u"tid"] = report.tid;
    if (!report.context.isEmpty())
        body[u"context"] = report.context;
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

class FeedbackOperation final : public platform::Operation
{
public:
    FeedbackOperation(QNetworkAccessManager &session, const QUrl &baseURL,
                      const platform::SecretBytes &token, const QByteArray &body,
                      std::function<void(bool)> done)
        : m_done(std::move(done))
    {
        if (token.isEmpty() || !isHeaderValue(*token)) {
            m_refusal = platform::delay(0ms, [this] { end(false); });
            return;
        }
        QNetworkRequest request(appendPath(baseURL, u"v1/feedback"));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
        request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
        setBearer(request, token);
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        // Elsewhere the user's text, and the token, would reach a host that the
        // user never named; and a page that is fetched instead has taken nothing.
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::ManualRedirectPolicy);
        request.setTransferTimeout(int(std::chrono::milliseconds(timeout).count()));
        send(session, request, body);
    }

private:
    void send(QNetworkAccessManager &session, const QNetworkRequest &request,
              const QByteArray &bytes)
    {
        auto *body = new SingleUseBody(bytes);
        m_reply = session.post(request, body);
        body->setParent(m_reply);
        // The status says it all; what the answer holds is not waited for.
        connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] {
            if (const int status = statusOf(*m_reply))
                end(status >= 200 && status <= 299);
        });
        connect(m_reply, &QNetworkReply::finished, this, [this] { end(false); });
    }

    static int statusOf(const QNetworkReply &reply)
    {
        return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    void end(bool taken)
    {
        finish([&] { m_done(taken); });
    }

    void stop() override
    {
        m_refusal.cancel();
        if (!m_reply)
            return;
        m_reply->disconnect(this);
        m_reply->deleteLater();
        m_reply = nullptr;
    }

    std::function<void(bool)> m_done;
    QNetworkReply *m_reply = nullptr;
    platform::Task m_refusal;
};

} // namespace

FeedbackService::FeedbackService(QNetworkAccessManager &session, QUrl baseURL,
                                 const platform::SecretBytes &token)
    : m_session(session)
    , m_baseURL(std::move(baseURL))
    , m_token((*token).trimmed())
{
}

platform::Task FeedbackService::submit(const FeedbackReport &report,
                                       std::function<void(bool)> done) const
{
    return platform::Task(
        new FeedbackOperation(m_session, m_baseURL, m_token, bodyOf(report), std::move(done)));
}

} // namespace nivora
