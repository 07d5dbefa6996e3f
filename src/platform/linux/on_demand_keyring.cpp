#include "on_demand_keyring.h"

#include "keyring_module.h"
#include "session_bus.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QMap>

using namespace Qt::Literals::StringLiterals;

namespace nivora::linuxdesktop {

namespace {

// In milliseconds. No longer than the end of the program waits for the keyring anyway:
// this call cannot be given up.
constexpr int searchLimit = 250;

using Attributes = QMap<QString, QString>;

// Whether the keyring has items of the service, locked ones included: Done, Absent, or
// Unavailable where nobody has the keyring's name or would take it. TimedOut for whatever
// is no plain answer.
// https://specifications.freedesktop.org/secret-service/latest/org.freedesktop.Secret.Service.html
Keyring::Outcome search(const QString &service)
{
    using Outcome = Keyring::Outcome;
    if (!isSessionBusNamed())
        return Outcome::Unavailable;
    qDBusRegisterMetaType<Attributes>();
    auto question =
        QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                                       u"org.freedesktop.Secret.Service"_s, u"SearchItems"_s);
    question << QVariant::fromValue(Attributes{{u"service"_s, service}});
    const auto answer = QDBusConnection::sessionBus().call(question, QDBus::Block, searchLimit);
    if (answer.type() == QDBusMessage::ErrorMessage)
        return QDBusError(answer).type() == QDBusError::ServiceUnknown ? Outcome::Unavailable
                                                                       : Outcome::TimedOut;
    if (answer.signature() != "aoao"_L1)
        return Outcome::TimedOut;
    for (const QVariant &items : answer.arguments()) { // the unlocked, the locked
        if (!qdbus_cast<QList<QDBusObjectPath>>(items).isEmpty())
            return Outcome::Done;
    }
    return Outcome::Absent;
}

} // namespace

OnDemandKeyring::OnDemandKeyring(QString module)
    : m_module(std::move(module))
{
}

OnDemandKeyring::~OnDemandKeyring() = default;

Keyring &OnDemandKeyring::load()
{
    if (!m_keyring) {
        auto keyring = loadKeyring(m_module);
        const std::scoped_lock lock(m_mutex);
        m_keyring = std::move(keyring);
        if (m_cancelled)
            m_keyring->cancel();
    }
    return *m_keyring;
}

Keyring::Outcome OnDemandKeyring::read(const SecretName &name, platform::SecretBytes &secret)
{
    if (!m_keyring) {
        const Outcome found = search(name.service);
        if (found == Outcome::Absent || found == Outcome::Unavailable)
            return found;
    }
    return load().read(name, secret);
}

Keyring::Outcome OnDemandKeyring::write(const SecretName &name, const platform::SecretBytes &secret)
{
    return load().write(name, secret);
}

Keyring::Outcome OnDemandKeyring::remove(const SecretName &name)
{
    if (!m_keyring) {
        const Outcome found = search(name.service);
        if (found == Outcome::Absent || found == Outcome::Unavailable)
            return found == Outcome::Absent ? Outcome::Done : found;
    }
    return load().remove(name);
}

void OnDemandKeyring::handlePending()
{
    if (m_keyring)
        m_keyring->handlePending();
}

bool OnDemandKeyring::unlock(const QString &service, bool create)
{
    return m_keyring && m_keyring->unlock(service, create);
}

void OnDemandKeyring::cancel()
{
    const std::scoped_lock lock(m_mutex);
    m_cancelled = true;
    if (m_keyring)
        m_keyring->cancel();
}

} // namespace nivora::linuxdesktop
