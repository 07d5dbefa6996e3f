#pragma once

#include "speech_decoder.h"

#include <memory>

namespace nivora::linuxdesktop {

struct VoskLibrary;

// Loads the model, which for a big one takes seconds and gigabytes; both go with
// the decoder. Null when it cannot be read.
std::unique_ptr<SpeechDecoder> makeVoskDecoder(std::shared_ptr<const VoskLibrary> library,
                                               const QString &modelFolder);

// Vosk sets blanks between the words of every language. They go where Chinese or
// Japanese characters meet.
QString withoutBlanksInHan(const QString &text);

} // namespace nivora::linuxdesktop
