#pragma once

#include "platform/secret_store.h"

#include <QMap>

#include <utility>

namespace nivora::memory {

class MemorySecretStore final : public platform::SecretStore
{
public:
    std::optional<QByteArray> read(const QString &service, const QString &account) override;
    void write(const QString &service, const QString &account, const QByteArray &secret) override;
    void remove(const QString &service, const QString &account) override;

    // An unavailable store reads as empty and loses what is written.
    void setAvailable(bool available) { m_available = available; }
    int count() const { return static_cast<int>(m_secrets.size()); }
    int reads() const { return m_reads; }

private:
    QMap<std::pair<QString, QString>, QByteArray> m_secrets;
    bool m_available = true;
    int m_reads = 0;
};

} // namespace nivora::memory
