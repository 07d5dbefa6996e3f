#include "core/billing_service.h"

#include "auth_request.h"

#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

AuthRequest::Content request(const QByteArray &method, QStringView path,
                             const platform::SecretText &token)
{
    return {.method = method, .path = path, .token = (*token).trimmed()};
}

// Absent for what is no whole number that fits.
std::optional<qint64> integerOf(const QJsonValue &value)
{
    const qint64 whole = value.toInteger(0);
    if (whole == 0 && value.toInteger(1) == 1)
        return std::nullopt;
    return whole;
}

AuthResult<BillingStatus> statusOf(const QByteArray &answer)
{
    const QJsonObject object = answerObject(answer);
    const auto used = integerOf(object[u"used"]);
    const auto quota = integerOf(object[u"quota"]);
    const QJsonValue end = object[u"periodEnd"];
    const bool hasEnd = !end.isUndefined() && !end.isNull();
    const auto periodEnd = integerOf(end);
    if (!object[u"plan"].isString() || !object[u"status"].isString() || !used || !quota ||
        (hasEnd && !periodEnd))
        return AuthError::invalidResponse();
    return BillingStatus{object[u"plan"].toString(), object[u"status"].toString(), *used, *quota,
                         periodEnd};
}

AuthResult<QUrl> pageOf(const QByteArray &answer)
{
    const QUrl url(answerObject(answer)[u"url"].toString());
    // What else a desktop would open is no page: a file, or another program.
    const bool isPage = url.isValid() && !url.host().isEmpty() &&
                        (url.scheme() == u"https" || url.scheme() == u"http");
    if (!isPage)
        return AuthError::invalidResponse();
    return url;
}

template<typename Value>
AuthRequest::Done decoded(AuthResult<Value> (*decode)(const QByteArray &),
                          std::function<void(AuthResult<Value>)> done)
{
    return [decode, done = std::move(done)](const AuthResult<QByteArray> &result) {
        if (const auto *error = std::get_if<AuthError>(&result))
            done(*error);
        else
            done(decode(std::get<QByteArray>(result)));
    };
}

} // namespace

bool BillingStatus::isPro() const
{
    return plan == u"pro";
}

BillingService::BillingService(AuthEndpoint endpoint)
    : m_endpoint(std::move(endpoint))
{
}

platform::Task BillingService::status(const platform::SecretText &token,
                                      std::function<void(AuthResult<BillingStatus>)> done) const
{
    return platform::Task(new AuthRequest(m_endpoint, request("GET"_ba, u"billing/status", token),
                                          decoded(&statusOf, std::move(done))));
}

platform::Task BillingService::checkoutURL(const platform::SecretText &token, OnPage done) const
{
    return page(u"billing/checkout", token, std::move(done));
}

platform::Task BillingService::portalURL(const platform::SecretText &token, OnPage done) const
{
    return page(u"billing/portal", token, std::move(done));
}

platform::Task BillingService::page(QStringView path, const platform::SecretText &token,
                                    OnPage done) const
{
    return platform::Task(new AuthRequest(m_endpoint, request("POST"_ba, path, token),
                                          decoded(&pageOf, std::move(done))));
}

} // namespace nivora
