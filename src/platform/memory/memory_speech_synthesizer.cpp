#include "platform_memory/memory_speech_synthesizer.h"

namespace nivora::memory {

class MemorySpeechSynthesizer::Speech final : public platform::Operation
{
public:
    Speech(MemorySpeechSynthesizer &owner, std::function<void()> started,
           std::function<void(End)> ended)
        : m_owner(owner)
        , m_started(std::move(started))
        , m_ended(std::move(ended))
    {
    }

    void begin() { deliver(m_started); }
    void end(End end)
    {
        finish([&] { m_ended(end); });
    }
    // What a service without a test's hand does, in later turns of the loop.
    void runByItself()
    {
        QMetaObject::invokeMethod(
            this,
            [this] {
                begin();
                QMetaObject::invokeMethod(
                    this, [this] { end(End::Finished); }, Qt::QueuedConnection);
            },
            Qt::QueuedConnection);
    }

private:
    void stop() override
    {
        if (m_owner.m_current == this)
            m_owner.m_current = nullptr;
    }

    MemorySpeechSynthesizer &m_owner;
    std::function<void()> m_started;
    std::function<void(End)> m_ended;
};

platform::Task MemorySpeechSynthesizer::readVoices(
    std::function<void(std::optional<std::vector<platform::SpeechVoice>>)> done)
{
    ++m_voiceReads;
    return platform::delay({}, [this, done = std::move(done)] {
        done(m_installed ? std::optional(m_voices) : std::nullopt);
    });
}

platform::Task MemorySpeechSynthesizer::speak(const platform::Utterance &utterance,
                                              std::function<void()> started,
                                              std::function<void(End)> ended)
{
    m_utterances.append(utterance);
    if (!m_installed)
        return platform::delay({}, [ended = std::move(ended)] { ended(End::Failed); });
    endSpeaking(End::Cancelled);
    auto *speech = new Speech(*this, std::move(started), std::move(ended));
    m_current = speech;
    if (m_speaksAtOnce)
        speech->runByItself();
    return platform::Task(speech);
}

void MemorySpeechSynthesizer::startSpeaking()
{
    if (m_current)
        m_current->begin();
}

void MemorySpeechSynthesizer::endSpeaking(End end)
{
    if (m_current)
        m_current->end(end);
}

} // namespace nivora::memory
