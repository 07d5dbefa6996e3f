#pragma once

#include "platform/speech_backend.h"

#include <QString>

#include <memory>

namespace nivora::linuxdesktop {

// Speaks and listens by a module that is loaded at the first use and then stays.
// Where it cannot be loaded there is no speech service and no microphone.
class LazySpeech final : public platform::SpeechBackend
{
public:
    // Borrows the tokenizer. `module` is a file.
    explicit LazySpeech(platform::JapaneseTokenizer &tokenizer,
                        const QString &module = defaultModule());
    ~LazySpeech() override;

    // Where an installation has it, seen from the program.
    static QString defaultModule();

    platform::SpeechSynthesizer &synthesizer() override;
    platform::SpeechRecognizer &recognizer() override;
    platform::AudioInput &audioInput() override;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace nivora::linuxdesktop
