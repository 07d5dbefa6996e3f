#pragma once

#include "platform/audio_input.h"

namespace nivora::memory {

// A microphone into which a test speaks.
class MemoryAudioInput final : public platform::AudioInput
{
public:
    platform::Task requestAccess(std::function<void(bool)> done) override;
    platform::Task record(std::function<void(const QByteArray &)> samples,
                          std::function<void(Failure)> failed) override;

    // The answer to requestAccess().
    void setGrants(bool grants) { m_grants = grants; }
    int accessRequests() const { return m_accessRequests; }
    bool isRecording() const { return m_current; }

    void hear(const QByteArray &samples);
    void fail(Failure failure);

private:
    class Recording;

    bool m_grants = true;
    int m_accessRequests = 0;
    Recording *m_current = nullptr;
};

} // namespace nivora::memory
