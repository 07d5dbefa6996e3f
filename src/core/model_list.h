#pragma once

#include "core/translation_config.h"

#include "platform/http_client.h"
#include "platform/task.h"

#include <QStringList>

#include <functional>
#include <optional>

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

    ModelListRequest(platform::HttpClient &http, const TranslationConfig &config, Done done);

private:
    void onBytes(const QByteArray &bytes);
    void onEnd(bool isWhole);
    void end(const std::optional<QStringList> &models);
    void stop() override;

    Done m_done;
    platform::Task m_exchange; // or the refusal to send
    int m_status = 0;
    QByteArray m_answer;
};

} // namespace nivora
