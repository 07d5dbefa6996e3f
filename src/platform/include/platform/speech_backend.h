#pragma once

namespace nivora::platform {

class AudioInput;
class JapaneseTokenizer;
class SpeechRecognizer;
class SpeechSynthesizer;

// The parts of a backend that speak and listen, where they are a library that is
// loaded when they are first used.
class SpeechBackend
{
public:
    virtual ~SpeechBackend() = default;

    virtual SpeechSynthesizer &synthesizer() = 0;
    virtual SpeechRecognizer &recognizer() = 0;
    virtual AudioInput &audioInput() = 0;
};

// What such a library exports under the name nivoraMakeSpeechBackend. The tokenizer
// is borrowed, the result the caller's.
using MakeSpeechBackend = SpeechBackend *(*)(JapaneseTokenizer *tokenizer);

} // namespace nivora::platform
