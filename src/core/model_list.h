#pragma once

#include "core/translation_config.h"

#include "platform/task.h"

#include <QNetworkReply>
#include <QStringList>

#include <functional>
#include <optional>

class QNetworkAccessManager;

namespace nivora {

// Asks an OpenAI-compatible endpoint for its models: GET v1/models. Sent once,
// without following a redirect, since elsewhere the key would reach a host that
// nobody named.
// https://platform.openai.com/docs/api-reference/models/list
class ModelListRequest final : public platform::Operation
{
public:
    // The names; absent for whatever is no such list.
    using Done = std::function<void(std::optional<QStringList>)>;

    ModelListRequest(QNetworkAccessManager &session, const TranslationConfig &config, Done done);

private:
    void onReadyRead();
    void end(const std::optional<QStringList> &models);
    void stop() override;

    Done m_done;
    QNetworkReply *m_reply = nullptr;
    platform::Task m_refusal;
    QByteArray m_answer;
};

} // namespace nivora
