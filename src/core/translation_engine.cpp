#include "core/translation_engine.h"

#include "core/event_stream.h"
#include "core/prompts.h"

#include "service_request.h"

#include <QJsonArray>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr auto translationIdHeader = "X-Translation-Id";

class StreamOperation final : public ServiceRequest
{
public:
    StreamOperation(platform::HttpClient &http, const TranslationConfig &config,
                    const QJsonObject &body, TranslationEngine::Callbacks callbacks)
        : ServiceRequest(http, config, Answer::Stream, body)
        , m_callbacks(std::move(callbacks))
    {
    }

private:
    void onAccepted(const platform::HttpHead &head) override;
    void onBytes(const QByteArray &bytes) override;
    void onComplete() override;
    void onFailed(const TranslationError &error) override { end(error); }
    bool onLine(QByteArrayView line);
    void endAfterTheLastLine();
    void end(const std::optional<TranslationError> &error);

    TranslationEngine::Callbacks m_callbacks;
    LineSplitter m_lines;
    bool m_delivered = false; // a piece has been given
    bool m_ended = false;     // no further line counts
};

void StreamOperation::onAccepted(const platform::HttpHead &head)
{
    const QString id = QString::fromUtf8(head.header(translationIdHeader));
    if (!id.isEmpty() && m_callbacks.onTranslationId)
        deliver([&] { m_callbacks.onTranslationId(id); });
}

void StreamOperation::onBytes(const QByteArray &bytes)
{
    m_lines.feed(bytes, [this](QByteArrayView line) { return onLine(line); });
    if (m_ended)
        endAfterTheLastLine();
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

void StreamOperation::onComplete()
{
    m_lines.finish([this](QByteArrayView line) { return onLine(line); });
    if (isRunning())
        endAfterTheLastLine();
}

void StreamOperation::endAfterTheLastLine()
{
    end(m_delivered ? std::nullopt : std::optional(TranslationError::emptyResponse()));
}

void StreamOperation::end(const std::optional<TranslationError> &error)
{
    finish([&] { m_callbacks.onFinished(error); });
}

} // namespace

platform::Task TranslationEngine::translate(const QString &text, Language target,
                                            const TranslationOptions &options,
                                            const TranslationConfig &config, Callbacks callbacks)
{
    const QJsonObject body = translateRequestBody(text, target, options, config, /*stream=*/true);
    return platform::Task(new StreamOperation(m_http, config, body, std::move(callbacks)));
}

QJsonObject TranslationEngine::translateRequestBody(const QString &text, Language target,
                                                    const TranslationOptions &options,
                                                    const TranslationConfig &config, bool stream)
{
    if (config.cloud)
        return translateBody(text, target, options, stream);
    const QString prompt = PromptTemplate::render(
        config.translateTemplate, PromptTemplate::translateVariables(text, target, options));
    QJsonObject body = chatBody(prompt, config.modelName, /*temperature=*/0);
    body[u"stream"_s] = stream;
    if (stream)
        body[u"stream_options"_s] = QJsonObject{{u"include_usage"_s, true}};
    return body;
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
