#pragma once

#include "platform/preferences.h"

#include <QMap>

namespace nivora::memory {

class MemoryPreferences final : public platform::Preferences
{
public:
    std::optional<platform::PreferenceValue> value(const QString &key) const override;
    void apply(std::span<const platform::PreferenceChange> changes) override;

    // As another process does.
    void setElsewhere(const QString &key, const platform::PreferenceValue &value)
    {
        m_values.insert(key, value);
        tellOfChange({key});
    }

    QStringList keys() const { return m_values.keys(); }
    // How often apply() was called: each call is one write to a real store.
    int writes() const { return m_writes; }

private:
    QMap<QString, platform::PreferenceValue> m_values;
    int m_writes = 0;
};

} // namespace nivora::memory
