#include "platform_memory/memory_audio_input.h"

namespace nivora::memory {

class MemoryAudioInput::Recording final : public platform::Operation
{
public:
    Recording(MemoryAudioInput &owner, std::function<void(const QByteArray &)> samples,
              std::function<void(Failure)> failed)
        : m_owner(owner)
        , m_samples(std::move(samples))
        , m_failed(std::move(failed))
    {
    }

    void hear(const QByteArray &samples)
    {
        deliver([&] { m_samples(samples); });
    }
    void fail(Failure failure)
    {
        finish([&] { m_failed(failure); });
    }

private:
    void stop() override
    {
        if (m_owner.m_current == this)
            m_owner.m_current = nullptr;
    }

    MemoryAudioInput &m_owner;
    std::function<void(const QByteArray &)> m_samples;
    std::function<void(Failure)> m_failed;
};

platform::Task MemoryAudioInput::requestAccess(std::function<void(bool)> done)
{
    ++m_accessRequests;
    return platform::delay({}, [this, done = std::move(done)] { done(m_grants); });
}

platform::Task MemoryAudioInput::record(std::function<void(const QByteArray &)> samples,
                                        std::function<void(Failure)> failed)
{
    m_current = new Recording(*this, std::move(samples), std::move(failed));
    return platform::Task(m_current);
}

void MemoryAudioInput::hear(const QByteArray &samples)
{
    if (m_current)
        m_current->hear(samples);
}

void MemoryAudioInput::fail(Failure failure)
{
    if (m_current)
        m_current->fail(failure);
}

} // namespace nivora::memory
