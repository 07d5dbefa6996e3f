#pragma once

#include "platform/login_item.h"

namespace nivora::memory {

class MemoryLoginItem final : public platform::LoginItem
{
public:
    bool isEnabled() const override { return m_enabled; }

    std::optional<QString> setEnabled(bool enabled) override
    {
        if (!m_refusal.isEmpty())
            return m_refusal;
        m_enabled = enabled;
        return std::nullopt;
    }

    // Why every change fails from now on; none does when it is empty.
    void setRefusal(const QString &reason) { m_refusal = reason; }

private:
    bool m_enabled = false;
    QString m_refusal;
};

} // namespace nivora::memory
