#include "platform_memory/memory_secret_store.h"

namespace nivora::memory {

std::optional<QByteArray> MemorySecretStore::read(const QString &service, const QString &account)
{
    ++m_reads;
    const auto found = m_secrets.constFind({service, account});
    if (!m_available || found == m_secrets.cend())
        return std::nullopt;
    return *found;
}

void MemorySecretStore::write(const QString &service, const QString &account,
                              const QByteArray &secret)
{
    if (m_available)
        m_secrets.insert({service, account}, secret);
}

void MemorySecretStore::remove(const QString &service, const QString &account)
{
    if (m_available)
        m_secrets.remove({service, account});
}

} // namespace nivora::memory
