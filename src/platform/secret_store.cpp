#include "platform/secret_store.h"

namespace nivora::platform {

class SecretNotifier : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void answered();
};

namespace {

class SecretWatch final : public Operation
{
public:
    SecretWatch(const SecretNotifier &notifier, std::function<void()> answers)
    {
        connect(
            &notifier, &SecretNotifier::answered, this,
            [this, answers = std::move(answers)] { deliver(answers); }, Qt::QueuedConnection);
    }

private:
    void stop() override {}
};

} // namespace

SecretStore::SecretStore()
    : m_notifier(std::make_unique<SecretNotifier>())
{
}

SecretStore::~SecretStore() = default;

Task SecretStore::watch(std::function<void()> answers) const
{
    return Task(new SecretWatch(*m_notifier, std::move(answers)));
}

void SecretStore::tellOfAnswer() const
{
    Q_EMIT m_notifier->answered();
}

} // namespace nivora::platform

#include "secret_store.moc"
