#pragma once

#include <QString>

#include <span>

namespace nivora::linuxdesktop {

// One dictation in a recogniser's hands. Used on one thread, which it keeps busy.
class SpeechDecoder
{
public:
    virtual ~SpeechDecoder() = default;

    // More sound, in the format of AudioInput. False when the recogniser gave up.
    virtual bool accept(std::span<const qint16> samples) = 0;

    // All that was understood so far, from the beginning.
    virtual QString text() = 0;

    // The same, when there is no more sound. The last call.
    virtual QString finish() = 0;
};

// One stretch of speech after the other.
QString joinedSpeech(const QString &before, const QString &more);

} // namespace nivora::linuxdesktop
