#include "core/translation_engine.h"

#include "core/event_stream.h"
#include "core/prompts.h"

#include "service_request.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Variants are to differ from each other; a translation is to be the best one.
constexpr double variantsTemperature = 0.7;

// The text of a chat completion; absent when the bytes are none.
std::optional<QString> completionText(QByteArray answer)
{
    // One bad byte shall cost one character, not the answer.
    if (!answer.isValidUtf8())
        answer = QString::fromUtf8(answer).toUtf8();
    const QJsonValue choices = QJsonDocument::fromJson(answer).object()[u"choices"];
    if (!choices.isArray())
        return std::nullopt;
    const QJsonArray list = choices.toArray();
    for (const auto &choice : list) {
        if (!choice.isObject() || !choice.toObject()[u"message"].isObject())
            return std::nullopt;
    }
    if (list.isEmpty())
        return QString();
    const QJsonObject message = list.first().toObject()[u"message"].toObject();
    return lenientText(message[u"content"]).value_or(QString()).trimmed();
}

QJsonObject variantsBody(const QString &text, Language target, int count,
                         const TranslationConfig &config)
{
    QJsonObject body = config.cloud ? QJsonObject{{u"text"_s, text},
                                                  {u"target"_s, rawValue(target)},
                                                  {u"mode"_s, u"variants"_s},
                                                  {u"variantCount"_s, count}}
                                    : chatBody(SimplePrompt::variants(text, target, count),
                                               config.modelName, variantsTemperature);
    body[u"stream"_s] = false;
    return body;
}

class OneShotOperation final : public ServiceRequest
{
public:
    OneShotOperation(platform::HttpClient &http, const TranslationConfig &config,
                     const QJsonObject &body, TranslationEngine::OnText done)
        : ServiceRequest(http, config, Answer::Whole, body)
        , m_done(std::move(done))
    {
    }

private:
    void onAccepted(const platform::HttpHead &) override { m_bytes.clear(); }

    void onBytes(const QByteArray &bytes) override
    {
        m_bytes += bytes;
        // A server cannot fill the memory.
        if (m_bytes.size() > LineSplitter::maximumLine)
            onFailed(invalidResponse());
    }

    void onComplete() override
    {
        const auto text = completionText(std::move(m_bytes));
        if (!text)
            return onFailed(invalidResponse());
        finish([&] { m_done(*text, std::nullopt); });
    }

    void onFailed(const TranslationError &error) override
    {
        finish([&] { m_done(QString(), error); });
    }

    TranslationEngine::OnText m_done;
    QByteArray m_bytes;
};

} // namespace

platform::Task TranslationEngine::translateOnce(const QString &text, Language target,
                                                const TranslationConfig &config, OnText done)
{
    const QJsonObject body = translateRequestBody(text, target, {}, config, /*stream=*/false);
    return platform::Task(new OneShotOperation(m_http, config, body, std::move(done)));
}

platform::Task TranslationEngine::variants(const QString &text, Language target, int count,
                                           const TranslationConfig &config, OnVariants done)
{
    const auto parse = [count, done = std::move(done)](
                           const QString &answer, const std::optional<TranslationError> &error) {
        done(error ? QStringList() : parseVariants(answer, count), error);
    };
    return platform::Task(
        new OneShotOperation(m_http, config, variantsBody(text, target, count, config), parse));
}

} // namespace nivora
