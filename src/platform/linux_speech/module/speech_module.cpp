// The entry of the module that the program loads when it first speaks or listens.

#include "platform/speech_backend.h"

#include "platform_linux_speech/audio_qt_input.h"
#include "platform_linux_speech/speech_offline_recognizer.h"
#include "platform_linux_speech/speechd_synthesizer.h"

#include <QtGlobal>

using namespace nivora;

namespace {

class LinuxSpeech final : public platform::SpeechBackend
{
public:
    explicit LinuxSpeech(platform::JapaneseTokenizer &tokenizer)
        : m_synthesizer(tokenizer)
    {
    }

    platform::SpeechSynthesizer &synthesizer() override { return m_synthesizer; }
    platform::SpeechRecognizer &recognizer() override { return m_recognizer; }
    platform::AudioInput &audioInput() override { return m_audioInput; }

private:
    linuxdesktop::SpeechdSynthesizer m_synthesizer;
    linuxdesktop::OfflineSpeechRecognizer m_recognizer;
    linuxdesktop::QtAudioInput m_audioInput;
};

} // namespace

extern "C" Q_DECL_EXPORT platform::SpeechBackend *
nivoraMakeSpeechBackend(platform::JapaneseTokenizer *tokenizer)
{
    return new LinuxSpeech(*tokenizer);
}
