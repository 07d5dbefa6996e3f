#include "core/connection_test.h"

#include "core/event_stream.h"

#include "model_list.h"
#include "service_request.h"

#include <QCoreApplication>
#include <QElapsedTimer>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr auto context = "ConnectionTest";
const auto prompt = u"Reply with the one word OK."_s;
// A model that talks on: what is to be learnt is known by then, but for the usage.
constexpr int enoughPieces = 64;

QJsonObject probeBody(const QString &model)
{
    QJsonObject body = chatBody(prompt, model, /*temperature=*/0);
    body[u"stream"_s] = true;
    body[u"stream_options"_s] = QJsonObject{{u"include_usage"_s, true}};
    return body;
}

class ProbeRequest final : public ServiceRequest
{
public:
    using Done = std::function<void(const ConnectionReport &)>;

    ProbeRequest(platform::HttpClient &http, const TranslationConfig &config, Done done)
        : ServiceRequest(http, config, Answer::Stream, probeBody(config.modelName))
        , m_done(std::move(done))
    {
        m_clock.start();
    }

private:
    void onAccepted(const platform::HttpHead &) override {}

    void onBytes(const QByteArray &bytes) override
    {
        bool wanted = true;
        m_lines.feed(bytes, [&](QByteArrayView line) { return wanted = onLine(line); });
        if (!wanted)
            end();
    }

    // False when nothing more is to be learnt.
    bool onLine(QByteArrayView line)
    {
        const auto event = parseEventLine(line);
        if (!event)
            return true;
        if (event->content && !event->content->isEmpty() && ++m_pieces == 1)
            m_report.firstPiece = std::chrono::milliseconds(m_clock.elapsed());
        m_report.reportsUsage = m_report.reportsUsage || event->usage.has_value();
        return !event->done && m_pieces < enoughPieces;
    }

    void onComplete() override
    {
        m_lines.finish([this](QByteArrayView line) { return onLine(line); });
        end();
    }

    void onFailed(const TranslationError &error) override
    {
        m_report.error = error;
        finish([&] { m_done(m_report); });
    }

    void end()
    {
        m_report.streams = m_pieces > 0;
        finish([&] { m_done(m_report); });
    }

    Done m_done;
    QElapsedTimer m_clock;
    LineSplitter m_lines;
    ConnectionReport m_report;
    int m_pieces = 0;
};

class TestOperation final : public platform::Operation
{
public:
    TestOperation(platform::HttpClient &http, const TranslationConfig &config,
                  std::function<void(const ConnectionReport &)> done)
        : m_done(std::move(done))
        , m_model(config.modelName)
        , m_probe(new ProbeRequest(http, config,
                                   [this](const ConnectionReport &report) {
                                       m_report = report;
                                       end();
                                   }))
        , m_list(
              new ModelListRequest(http, config, [this](const std::optional<QStringList> &models) {
                  m_models = models;
                  end();
              }))
    {
    }

private:
    // Once both have answered.
    void end()
    {
        if (m_probe.isRunning() || m_list.isRunning())
            return;
        m_report.models = m_models;
        if (m_models && !m_models->isEmpty())
            m_report.modelListed = m_models->contains(m_model);
        finish([&] { m_done(m_report); });
    }

    void stop() override
    {
        m_probe.cancel();
        m_list.cancel();
    }

    std::function<void(const ConnectionReport &)> m_done;
    QString m_model;
    ConnectionReport m_report;
    std::optional<QStringList> m_models;
    platform::Task m_probe;
    platform::Task m_list;
};

QString failureText(const TranslationError &error)
{
    if (error.kind() != TranslationError::Kind::Http)
        return error.errorDescription();
    const auto text = [&]() -> const char * {
        switch (error.status()) {
        case 401:
        case 403:
            return QT_TRANSLATE_NOOP("ConnectionTest", "服务拒绝了 API Key (HTTP %1)。");
        case 404:
        case 405:
            return QT_TRANSLATE_NOOP("ConnectionTest",
                                     "服务没有 v1/chat/completions，或不认识该模型 (HTTP %1)。");
        case 429:
            return QT_TRANSLATE_NOOP("ConnectionTest",
                                     "服务可以连接，但请求过多或额度用尽 (HTTP %1)。");
        default:
            return nullptr;
        }
    }();
    return text ? QCoreApplication::translate(context, text).arg(error.status())
                : error.errorDescription();
}

} // namespace

QString ConnectionReport::summary() const
{
    const auto text = [](const char *source) {
        return QCoreApplication::translate(context, source);
    };
    const QString unlisted =
        modelListed.value_or(true)
            ? QString()
            : text(QT_TRANSLATE_NOOP("ConnectionTest", "模型不在服务的列表中"));
    if (error)
        return unlisted.isEmpty() ? failureText(*error) : failureText(*error) + u' ' + unlisted;
    if (!streams)
        return text(QT_TRANSLATE_NOOP("ConnectionTest",
                                      "服务可以连接，但没有以流式返回文字，无法用于翻译。"));
    QStringList parts{
        text(QT_TRANSLATE_NOOP("ConnectionTest", "连接正常（%1 毫秒）")).arg(firstPiece.count())};
    if (!unlisted.isEmpty())
        parts << unlisted;
    else if (modelListed)
        parts << text(QT_TRANSLATE_NOOP("ConnectionTest", "模型可用"));
    parts << text(QT_TRANSLATE_NOOP("ConnectionTest", "支持流式"))
          << (reportsUsage ? text(QT_TRANSLATE_NOOP("ConnectionTest", "报告用量"))
                           : text(QT_TRANSLATE_NOOP("ConnectionTest", "不报告用量")));
    return parts.join(u" · "_s);
}

platform::Task ConnectionTest::run(const TranslationConfig &config,
                                   std::function<void(const ConnectionReport &)> done) const
{
    return platform::Task(new TestOperation(m_http, config, std::move(done)));
}

} // namespace nivora
