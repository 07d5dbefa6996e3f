#include "platform_memory/memory_keys.h"

#include <algorithm>

namespace nivora::memory {

bool MemoryKeyEventTap::start(std::function<void(const platform::KeyEvent &)> handler)
{
    ++m_startAttempts;
    if (!m_available)
        return false;
    m_handler = std::move(handler);
    return true;
}

void MemoryKeyEventTap::send(const platform::KeyEvent &event)
{
    // A copy: the handler may start the tap anew.
    if (const auto handler = m_handler)
        handler(event);
}

bool MemoryHotKey::grab(const platform::KeyChord &chord, std::function<void()> pressed)
{
    if (std::ranges::find(m_refused, chord) != m_refused.end())
        return false;
    std::erase_if(m_grabs, [&](const auto &grab) { return grab.first == chord; });
    m_grabs.emplace_back(chord, std::move(pressed));
    return true;
}

bool MemoryHotKey::press(const platform::KeyChord &chord)
{
    const auto grab = std::ranges::find_if(
        m_grabs, [&](const auto &candidate) { return candidate.first == chord; });
    if (grab == m_grabs.end())
        return false;
    // A copy: the callback may grab more chords.
    const auto pressed = grab->second;
    pressed();
    return true;
}

std::vector<platform::KeyChord> MemoryHotKey::grabbed() const
{
    std::vector<platform::KeyChord> chords;
    for (const auto &grab : m_grabs)
        chords.push_back(grab.first);
    return chords;
}

bool MemoryKeySynthesizer::press(const platform::KeyChord &chord)
{
    if (m_missing != Qt::Key_unknown && chord.key == m_missing)
        return false;
    m_presses.push_back(chord);
    if (m_target)
        m_target(chord);
    return true;
}

void MemoryKeySynthesizer::setTarget(std::function<void(const platform::KeyChord &)> target)
{
    m_target = std::move(target);
}

} // namespace nivora::memory
