#pragma once

#include "platform/speech_synthesizer.h"

#include <QList>

namespace nivora::memory {

// Says nothing: a test decides when speech starts and how it ends.
class MemorySpeechSynthesizer final : public platform::SpeechSynthesizer
{
public:
    platform::Task readVoices(
        std::function<void(std::optional<std::vector<platform::SpeechVoice>>)> done) override;
    platform::Task speak(const platform::Utterance &utterance, std::function<void()> started,
                         std::function<void(End)> ended) override;

    void setVoices(const std::vector<platform::SpeechVoice> &voices) { m_voices = voices; }
    // Whether there is a speech service.
    void setInstalled(bool installed) { m_installed = installed; }
    // Whether speech starts and finishes by itself, as soon as the loop comes to it.
    void setSpeaksAtOnce(bool speaksAtOnce) { m_speaksAtOnce = speaksAtOnce; }

    // All that was to be said.
    const QList<platform::Utterance> &utterances() const { return m_utterances; }
    int voiceReads() const { return m_voiceReads; }
    // Whether the last utterance has neither ended nor been dropped.
    bool isBusy() const { return m_current; }

    void startSpeaking();
    void endSpeaking(End end);

private:
    class Speech;

    std::vector<platform::SpeechVoice> m_voices;
    bool m_installed = true;
    bool m_speaksAtOnce = false;
    int m_voiceReads = 0;
    QList<platform::Utterance> m_utterances;
    Speech *m_current = nullptr;
};

} // namespace nivora::memory
