#pragma once

#include <QString>

#include <variant>

namespace nivora {

// Why a request about the account failed, with a message for the user.
class AuthError
{
public:
    enum class Kind { Http, Network, InvalidResponse };

    // `text` is the server's own, for the user; empty when it gave none.
    static AuthError http(int status, const QString &text = {});
    // `text` says what is wrong with the network.
    static AuthError network(const QString &text);
    static AuthError invalidResponse();

    Kind kind() const { return m_kind; }
    int status() const { return m_status; } // 0 unless kind() is Http

    // May be a server's text: to be shown as plain text only.
    QString errorDescription() const;

    bool operator==(const AuthError &) const = default;

private:
    AuthError(Kind kind, int status, const QString &text)
        : m_kind(kind)
        , m_status(status)
        , m_text(text)
    {
    }

    Kind m_kind;
    int m_status;
    QString m_text;
};

template<typename Value>
using AuthResult = std::variant<Value, AuthError>;

} // namespace nivora
