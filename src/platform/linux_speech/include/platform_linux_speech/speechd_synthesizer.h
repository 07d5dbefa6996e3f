#pragma once

#include "platform/speech_synthesizer.h"

#include <memory>

namespace nivora::platform {
class JapaneseTokenizer;
}

namespace nivora::linuxdesktop {

// The session's speech service, Speech Dispatcher. It is connected to, and
// started where it does not run, at the first call; the connection then stays.
//
// A thread of its own talks to it, since the library waits for answers without a
// bound. A service that is stuck fails the call after 10 s, as it does every
// further one until it answers again.
class SpeechdSynthesizer final : public platform::SpeechSynthesizer
{
public:
    // Borrows the tokenizer, for voices that cannot read kanji.
    explicit SpeechdSynthesizer(platform::JapaneseTokenizer &tokenizer);
    // Silences what is being said. Waits for the service at most 2 s.
    ~SpeechdSynthesizer() override;

    platform::Task readVoices(
        std::function<void(std::optional<std::vector<platform::SpeechVoice>>)> done) override;
    platform::Task speak(const platform::Utterance &utterance, std::function<void()> started,
                         std::function<void(End)> ended) override;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora::linuxdesktop
