#include "model_list.h"

#include "http_parts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>

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

ModelListRequest::ModelListRequest(QNetworkAccessManager &session, const TranslationConfig &config,
                                   Done done)
    : m_done(std::move(done))
{
    const platform::SecretBytes token = (*config.apiToken).trimmed();
    if (!isHeaderValue(*token)) {
        m_refusal = platform::delay(0ms, [this] { end(std::nullopt); });
        return;
    }
    QNetworkRequest request(appendPath(config.apiBaseURL, u"v1/models"));
    if (!token.isEmpty())
        setBearer(request, token);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(int(std::chrono::milliseconds(timeout).count()));
    m_reply = session.get(request);
    connect(m_reply, &QNetworkReply::readyRead, this, &ModelListRequest::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, [this] {
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const bool isWhole = m_reply->error() == QNetworkReply::NoError;
        if (isWhole)
            m_answer += m_reply->readAll();
        end(isWhole && status >= 200 && status <= 299 ? modelsOf(m_answer) : std::nullopt);
    });
}

void ModelListRequest::onReadyRead()
{
    m_answer += m_reply->readAll();
    if (m_answer.size() > maximumAnswer)
        end(std::nullopt);
}

void ModelListRequest::end(const std::optional<QStringList> &models)
{
    finish([&] { m_done(models); });
}

void ModelListRequest::stop()
{
    m_refusal.cancel();
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->deleteLater(); // which aborts it
    m_reply = nullptr;
}

} // namespace nivora
