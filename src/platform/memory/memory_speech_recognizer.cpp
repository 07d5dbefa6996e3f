#include "platform_memory/memory_speech_recognizer.h"

namespace nivora::memory {

class MemorySpeechRecognizer::Recognition final : public platform::SpeechRecognition
{
public:
    Recognition(MemorySpeechRecognizer &owner, Handler handler)
        : handler(std::move(handler))
        , m_owner(owner)
    {
    }
    ~Recognition() override
    {
        if (m_owner.m_current == this)
            m_owner.m_current = nullptr;
    }

    void append(const QByteArray &samples) override { m_owner.m_heard += samples; }
    void endAudio() override { m_owner.m_audioEnded = true; }

    const Handler handler;

private:
    MemorySpeechRecognizer &m_owner;
};

MemorySpeechRecognizer::~MemorySpeechRecognizer() = default;

std::unique_ptr<platform::SpeechRecognition>
MemorySpeechRecognizer::recognize(const QString &locale, Handler handler)
{
    m_locales.append(locale);
    if (!m_installed)
        return nullptr;
    m_heard.clear();
    m_audioEnded = false;
    auto recognition = std::make_unique<Recognition>(*this, std::move(handler));
    m_current = recognition.get();
    return recognition;
}

bool MemorySpeechRecognizer::deliver(const platform::RecognitionResult &result)
{
    if (!m_current)
        return false;
    // A copy: the handler may destroy the recognition.
    const Handler handler = m_current->handler;
    handler(result);
    return true;
}

} // namespace nivora::memory
