#pragma once

#include "core/auth_endpoint.h"
#include "core/auth_error.h"

#include "platform/secret.h"
#include "platform/task.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace nivora {

// The account's plan and usage as the server tells them, unchecked: `used` may
// exceed `quota`, and either may be 0 or less.
struct BillingStatus
{
    QString plan; // "pro" is the paid plan, anything else the free one
    QString status;
    qint64 used = 0;
    qint64 quota = 0;
    std::optional<qint64> periodEnd; // milliseconds since 1970, UTC

    bool isPro() const;

    bool operator==(const BillingStatus &) const = default;
};

// The cloud's requests about the user's plan. Nothing is retried and no redirect
// is followed. A token that cannot be sent is an invalid response.
class BillingService
{
public:
    explicit BillingService(AuthEndpoint endpoint);

    platform::Task status(const platform::SecretText &token,
                          std::function<void(AuthResult<BillingStatus>)> done) const;

    // Pages for the user's browser, of http or https: one to buy the plan on, one
    // to manage it.
    using OnPage = std::function<void(AuthResult<QUrl>)>;
    platform::Task checkoutURL(const platform::SecretText &token, OnPage done) const;
    platform::Task portalURL(const platform::SecretText &token, OnPage done) const;

private:
    platform::Task page(QStringView path, const platform::SecretText &token, OnPage done) const;

    AuthEndpoint m_endpoint;
};

} // namespace nivora
