#pragma once

#include "platform/keys.h"

#include <utility>
#include <vector>

namespace nivora::memory {

class MemoryKeyEventTap final : public platform::KeyEventTap
{
public:
    bool start(std::function<void(const platform::KeyEvent &)> handler) override;

    // Whether start() succeeds. A tap that already runs goes on.
    void setAvailable(bool available) { m_available = available; }
    bool isRunning() const { return m_handler != nullptr; }
    int startAttempts() const { return m_startAttempts; }

    // Runs the handler, if there is one.
    void send(const platform::KeyEvent &event);

private:
    std::function<void(const platform::KeyEvent &)> m_handler;
    bool m_available = true;
    int m_startAttempts = 0;
};

class MemoryHotKey final : public platform::GlobalHotKey
{
public:
    bool grab(const platform::KeyChord &chord, std::function<void()> pressed) override;

    // As if another program held the chord.
    void refuse(const platform::KeyChord &chord) { m_refused.push_back(chord); }
    // Presses the chord; false when nobody has grabbed it.
    bool press(const platform::KeyChord &chord);
    std::vector<platform::KeyChord> grabbed() const;

private:
    std::vector<platform::KeyChord> m_refused;
    std::vector<std::pair<platform::KeyChord, std::function<void()>>> m_grabs;
};

class MemoryKeySynthesizer final : public platform::KeySynthesizer
{
public:
    bool press(const platform::KeyChord &chord) override;

    const std::vector<platform::KeyChord> &presses() const { return m_presses; }
    // Runs at each press, in the place of the program that receives the key.
    void setTarget(std::function<void(const platform::KeyChord &)> target);
    // A keyboard without a key: press() fails and records nothing.
    void setMissingKey(Qt::Key key) { m_missing = key; }

private:
    std::vector<platform::KeyChord> m_presses;
    std::function<void(const platform::KeyChord &)> m_target;
    Qt::Key m_missing = Qt::Key_unknown;
};

} // namespace nivora::memory
