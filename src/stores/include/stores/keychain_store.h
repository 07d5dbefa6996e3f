#pragma once

#include "platform/secret.h"
#include "platform/task.h"

#include <QString>

#include <functional>
#include <optional>

namespace nivora {

namespace platform {
class SecretStore;
}

// The program's only gateway to the keychain. Failures are not reported: a read
// that fails looks like an absent secret, and a write that fails is lost. Only
// presence() tells that a keychain gives no answer.
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
    std::optional<platform::SecretText> read(const QString &account) const;

    // Whether there is a secret to be read, and not an empty one.
    enum class Presence {
        Stored,
        Absent,
        Unknown, // no answer for now
    };
    Presence presence(const QString &account) const;

    // Tells that presence() may know more now, for as long as the task lives.
    platform::Task watch(std::function<void()> answers) const;

    // An absent or empty value deletes the item.
    void write(const QString &account, const std::optional<platform::SecretText> &value);

private:
    platform::SecretStore &m_secrets;
};

} // namespace nivora
