#pragma once

#include "platform/secret.h"
#include "platform/task.h"

#include <QString>

#include <functional>
#include <memory>
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

class SecretNotifier;

// The desktop's keychain. Secrets are told apart by service and account.
//
// Main thread only. Every call returns within 100 ms, and so do all calls of one turn of
// the event loop together where the keychain does not answer.
class SecretStore
{
public:
    SecretStore();
    virtual ~SecretStore();

    // For a locked item the user is asked once to unlock it, in the background.
    virtual SecretAnswer read(const QString &service, const QString &account) = 0;

    // Replaces the secret of an existing item, or makes the item. A later read()
    // sees the new value even while the keychain is still at work. Failures are
    // not reported.
    virtual void write(const QString &service, const QString &account,
                       const SecretBytes &secret) = 0;

    // Removing what is not there is no failure.
    virtual void remove(const QString &service, const QString &account) = 0;

    // Tells that a keychain which did not answer in time has answered after all, or that
    // the user has unlocked it: a read() may find more now. For as long as the task lives.
    Task watch(std::function<void()> answers) const;

protected:
    // From any thread. Reaches those who watch from the event loop.
    void tellOfAnswer() const;

private:
    std::unique_ptr<SecretNotifier> m_notifier;
};

} // namespace nivora::platform
