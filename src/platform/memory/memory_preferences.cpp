#include "platform_memory/memory_preferences.h"

namespace nivora::memory {

std::optional<platform::PreferenceValue> MemoryPreferences::value(const QString &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.cend())
        return std::nullopt;
    return *found;
}

void MemoryPreferences::apply(std::span<const platform::PreferenceChange> changes)
{
    ++m_writes;
    for (const auto &change : changes) {
        if (change.value)
            m_values.insert(change.key, *change.value);
        else
            m_values.remove(change.key);
    }
}

} // namespace nivora::memory
