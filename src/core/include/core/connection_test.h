#pragma once

#include "core/translation_config.h"
#include "core/translation_error.h"

#include "platform/http_client.h"
#include "platform/task.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace nivora {

// What an endpoint of the user's own answered to one tiny translation request.
struct ConnectionReport
{
    // Why it did not answer. What follows counts only without it, up to the models.
    std::optional<TranslationError> error = {};
    std::chrono::milliseconds firstPiece{}; // from the request to the first text
    bool streams = false;
    bool reportsUsage = false;

    // By their names, in the endpoint's order; absent where it lists none.
    std::optional<QStringList> models = {};
    // Whether the configured model is among them; absent where nobody knows.
    std::optional<bool> modelListed = {};

    // One line for the user.
    QString summary() const;
};

// Tries an endpoint out: one streaming request as a translation makes it, and one
// for the list of its models. Borrows the client. Dropping the task stops both.
class ConnectionTest
{
public:
    explicit ConnectionTest(platform::HttpClient &http)
        : m_http(http)
    {
    }

    platform::Task run(const TranslationConfig &config,
                       std::function<void(const ConnectionReport &)> done) const;

private:
    platform::HttpClient &m_http;
};

} // namespace nivora
