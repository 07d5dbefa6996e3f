#include "desktop/carbon_hot_key.h"

namespace nivora {

bool CarbonHotKey::registerChord(const platform::KeyChord &chord)
{
    if (!m_registered) {
        m_registered = m_hotKey.grab(chord, [this] {
            if (onTrigger)
                onTrigger();
        });
    }
    return m_registered;
}

} // namespace nivora
