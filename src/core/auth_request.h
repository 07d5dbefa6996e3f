#pragma once

#include "core/auth_endpoint.h"
#include "core/auth_error.h"

#include "platform/secret.h"
#include "platform/task.h"

#include <QJsonObject>
#include <QStringView>

#include <functional>
#include <optional>

namespace nivora {

// The answer as a JSON object; an empty one when it is none.
QJsonObject answerObject(const QByteArray &answer);

// One request about the account: sent once, its answer read whole. A redirect is
// not followed, since elsewhere the token would reach a host that nobody named.
class AuthRequest final : public platform::Operation
{
public:
    struct Content
    {
        QByteArray method;
        QStringView path;
        QByteArray json = {}; // empty: no body
        // Absent: no Authorization header. One that is no session token cannot be
        // sent, which counts as an invalid response.
        std::optional<platform::SecretText> token = {};
    };
    // The body of an answer from 200 to 299.
    using Done = std::function<void(AuthResult<QByteArray>)>;

    AuthRequest(const AuthEndpoint &endpoint, const Content &content, Done done);

private:
    void send(const AuthEndpoint &endpoint, const Content &content);
    void onBytes(const QByteArray &bytes);
    AuthResult<QByteArray> outcome(const std::optional<platform::HttpFailure> &failure) const;
    void end(const AuthResult<QByteArray> &result);
    void stop() override;

    Done m_done;
    platform::Task m_exchange; // or the refusal to send
    int m_status = 0;          // absent: 0
    QByteArray m_answer;
};

} // namespace nivora
