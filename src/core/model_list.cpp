#include "model_list.h"

#include "http_parts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

// Without a sign of life. The list is ready-made: no model has to be loaded.
constexpr auto timeout = 10s;
// The longest lists known, of brokers, are some hundred kilobytes.
constexpr qsizetype maximumAnswer = 8 * 1024 * 1024;

std::optional<QStringList> modelsOf(const QByteArray &answer)
{
    const QJsonValue data = QJsonDocument::fromJson(answer).object()[u"data"];
    if (!data.isArray())
        return std::nullopt;
    QStringList models;
    for (const auto &model : data.toArray()) {
        if (const QString id = model.toObject()[u"id"].toString(); !id.isEmpty())
            models << id;
    }
    return models;
}

} // namespace

ModelListRequest::ModelListRequest(platform::HttpClient &http, const TranslationConfig &config,
                                   Done done)
    : m_done(std::move(done))
{
    const platform::SecretBytes token = (*config.apiToken).trimmed();
    if (!isHeaderValue(*token)) {
        m_exchange = platform::delay(0ms, [this] { end(std::nullopt); });
        return;
    }
    m_exchange = http.send(
        {.url = appendPath(config.apiBaseURL, u"v1/models"), .bearer = token, .silence = timeout},
        {
            .onHead = [this](const platform::HttpHead &head) { m_status = head.status; },
            .onBytes = [this](const QByteArray &bytes) { onBytes(bytes); },
            .onEnd = [this](const auto &failure) { onEnd(!failure); },
        });
}

void ModelListRequest::onBytes(const QByteArray &bytes)
{
    m_answer += bytes;
    if (m_answer.size() > maximumAnswer)
        end(std::nullopt);
}

void ModelListRequest::onEnd(bool isWhole)
{
    end(isWhole && m_status >= 200 && m_status <= 299 ? modelsOf(m_answer) : std::nullopt);
}

void ModelListRequest::end(const std::optional<QStringList> &models)
{
    finish([&] { m_done(models); });
}

void ModelListRequest::stop()
{
    m_exchange.cancel();
}

} // namespace nivora
