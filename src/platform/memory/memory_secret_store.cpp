#include "platform_memory/memory_secret_store.h"

namespace nivora::memory {

platform::SecretAnswer MemorySecretStore::read(const QString &service, const QString &account)
{
    ++m_reads;
    if (!m_available)
        return {};
    const auto found = m_secrets.constFind({service, account});
    if (found == m_secrets.cend())
        return {.secret = std::nullopt, .isKnown = true};
    return {.secret = *found, .isKnown = true};
}

void MemorySecretStore::write(const QString &service, const QString &account,
                              const platform::SecretBytes &secret)
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
