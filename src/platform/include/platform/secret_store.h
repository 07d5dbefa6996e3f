#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace nivora::platform {

// The desktop's keychain. Secrets are told apart by service and account.
//
// Main thread only. A keychain that is missing, locked or stuck behaves as an
// empty one: every call returns within 250 ms, and a store that has not answered
// one call is not waited for again until it has.
class SecretStore
{
public:
    virtual ~SecretStore() = default;

    // The secret's bytes, absent when there is no such item or it cannot be read
    // now. A locked item is absent; the user is asked once to unlock it, in the
    // background.
    virtual std::optional<QByteArray> read(const QString &service, const QString &account) = 0;

    // Replaces the secret of an existing item, or makes the item. A later read()
    // sees the new value even while the keychain is still at work. Failures are
    // not reported.
    virtual void write(const QString &service, const QString &account,
                       const QByteArray &secret) = 0;

    // Removing what is not there is no failure.
    virtual void remove(const QString &service, const QString &account) = 0;
};

} // namespace nivora::platform
