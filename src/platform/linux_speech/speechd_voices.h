#pragma once

#include "platform/speech_synthesizer.h"

#include <optional>

namespace nivora::linuxdesktop {

// A voice as Speech Dispatcher lists it.
struct SpeechdVoice
{
    QString module;   // the synthesizer behind it, "espeak-ng"
    QString name;     // "English (America)+Adam"
    QString language; // "en-US", "cmn-LATN-PINYIN", "ja"
    QString variant;  // "Adam"; empty or "none" for the voice as it is
};

// The voice as the program knows it. Absent for what nobody should be offered:
// the hundred disguises of each of eSpeak's voices, voices that cannot read their
// own language's script, and the module that only says that there is none.
std::optional<platform::SpeechVoice> offeredVoice(const SpeechdVoice &voice);

// An identifier is the module and the voice's name.
struct SpeechdVoiceId
{
    QString module;
    QString name;
};
SpeechdVoiceId parsedVoiceId(const QString &identifier);

// Whether the module says the kanji it is given as "Chinese letter".
bool needsKana(QStringView module);

// From SpeechSynthesizer's rate to Speech Dispatcher's: -100 at 0.3, 0 at 0.5,
// 100 at 0.7.
int speechdRate(double rate);

} // namespace nivora::linuxdesktop
