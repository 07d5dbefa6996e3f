#pragma once

#include <QString>

#include <optional>

namespace nivora {

namespace platform {
class SecretStore;
}

// The program's only gateway to the keychain. Failures are not reported: a read
// that fails looks like an absent secret, a write that fails is lost.
class KeychainStore
{
public:
    // Accounts in use.
    static QString byoApiKeyAccount();    // the key for a user's own endpoint
    static QString sessionTokenAccount(); // the cloud's bearer token

    explicit KeychainStore(platform::SecretStore &secrets)
        : m_secrets(secrets)
    {
    }

    // Absent also when the stored bytes are no UTF-8.
    std::optional<QString> read(const QString &account) const;

    // An absent or empty value deletes the item.
    void write(const QString &account, const std::optional<QString> &value);

private:
    platform::SecretStore &m_secrets;
};

} // namespace nivora
