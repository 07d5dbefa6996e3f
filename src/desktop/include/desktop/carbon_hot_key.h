#pragma once

#include "platform/keys.h"

#include <functional>

namespace nivora {

// Reserves the trigger's chord in every application. Main thread only.
class CarbonHotKey
{
public:
    explicit CarbonHotKey(platform::GlobalHotKey &hotKey)
        : m_hotKey(hotKey)
    {
    }

    // Called at each press of the chord.
    std::function<void()> onTrigger;

    // False when another program holds the chord; it may then be tried again.
    // Once registered, further calls do nothing.
    bool registerChord(const platform::KeyChord &chord);

private:
    platform::GlobalHotKey &m_hotKey;
    bool m_registered = false;
};

} // namespace nivora
