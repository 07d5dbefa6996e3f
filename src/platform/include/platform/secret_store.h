#pragma once

#include "platform/secret.h"

#include <QString>

#include <optional>

namespace nivora::platform {

// What a keychain says of one secret.
struct SecretAnswer
{
    // Absent when there is no such item, and when nothing is known.
    std::optional<SecretBytes> secret;
    // False: the keychain is missing, locked or stuck, and may hold the secret.
    bool isKnown = false;
};

// The desktop's keychain. Secrets are told apart by service and account.
//
// Main thread only. Every call returns within 250 ms, and a keychain that has not
// answered one call is not waited for again until it has.
class SecretStore
{
public:
    virtual ~SecretStore() = default;

    // For a locked item the user is asked once to unlock it, in the background.
    virtual SecretAnswer read(const QString &service, const QString &account) = 0;

    // Replaces the secret of an existing item, or makes the item. A later read()
    // sees the new value even while the keychain is still at work. Failures are
    // not reported.
    virtual void write(const QString &service, const QString &account,
                       const SecretBytes &secret) = 0;

    // Removing what is not there is no failure.
    virtual void remove(const QString &service, const QString &account) = 0;
};

} // namespace nivora::platform
