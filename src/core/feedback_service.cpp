#include "core/feedback_service.h"

#include "http_parts.h"

#include <QJsonDocument>
#include <QJsonObject>

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
    FeedbackOperation(platform::HttpClient &http, const QUrl &baseURL,
                      const platform::SecretBytes &token, const QByteArray &body,
                      std::function<void(bool)> done)
        : m_done(std::move(done))
    {
        if (token.isEmpty() || !isHeaderValue(*token)) {
            m_exchange = platform::delay(0ms, [this] { end(false); });
            return;
        }
        // No redirect is followed: elsewhere the user's text, and the token, would
        // reach a host that the user never named; and a page that is fetched instead
        // has taken nothing.
        m_exchange =
            http.send({.method = "POST"_ba,
                       .url = appendPath(baseURL, u"v1/feedback"),
                       .headers = {{"Content-Type"_ba, "application/json"_ba}},
                       .bearer = token,
                       .body = body,
                       .silence = timeout},
                      {
                          // The status says it all; what the answer holds is not waited for.
                          .onHead =
                              [this](const platform::HttpHead &head) {
                                  end(head.status >= 200 && head.status <= 299);
                              },
                          .onBytes = [](const QByteArray &) {},
                          .onEnd = [this](const auto &) { end(false); },
                      });
    }

private:
    void end(bool taken)
    {
        finish([&] { m_done(taken); });
    }

    void stop() override { m_exchange.cancel(); }

    std::function<void(bool)> m_done;
    platform::Task m_exchange; // or the refusal to send
};

} // namespace

FeedbackService::FeedbackService(platform::HttpClient &http, QUrl baseURL,
                                 const platform::SecretBytes &token)
    : m_http(http)
    , m_baseURL(std::move(baseURL))
    , m_token((*token).trimmed())
{
}

platform::Task FeedbackService::submit(const FeedbackReport &report,
                                       std::function<void(bool)> done) const
{
    return platform::Task(
        new FeedbackOperation(m_http, m_baseURL, m_token, bodyOf(report), std::move(done)));
}

} // namespace nivora
