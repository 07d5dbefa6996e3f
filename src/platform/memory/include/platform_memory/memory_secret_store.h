#pragma once

#include "platform/secret_store.h"

#include <QMap>

#include <utility>

namespace nivora::memory {

class MemorySecretStore final : public platform::SecretStore
{
public:
    platform::SecretAnswer read(const QString &service, const QString &account) override;
    void write(const QString &service, const QString &account,
               const platform::SecretBytes &secret) override;
    void remove(const QString &service, const QString &account) override;

    // An unavailable store knows nothing and loses what is written.
    void setAvailable(bool available)
    {
        if (!std::exchange(m_available, available) && available)
            tellOfAnswer();
    }
    // As if new.
    void clear()
    {
        m_secrets.clear();
        m_reads = 0;
        m_available = true;
    }
    int count() const { return static_cast<int>(m_secrets.size()); }
    int reads() const { return m_reads; }

private:
    QMap<std::pair<QString, QString>, platform::SecretBytes> m_secrets;
    bool m_available = true;
    int m_reads = 0;
};

} // namespace nivora::memory
