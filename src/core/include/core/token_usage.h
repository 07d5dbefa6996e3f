#pragma once

#include <QtGlobal>

namespace nivora {

// The token counts that the service reported for one request.
struct TokenUsage
{
    qint64 promptTokens = 0;
    qint64 completionTokens = 0;

    bool operator==(const TokenUsage &) const = default;
};

} // namespace nivora
