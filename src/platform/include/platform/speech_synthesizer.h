#pragma once

#include "platform/task.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace nivora::platform {

struct SpeechVoice
{
    enum class Quality { Default = 1, Enhanced = 2, Premium = 3 };

    QString identifier; // the same in every run; never empty
    QString name;       // as shown to people
    QString language;   // "ja-JP"; what the service names more finely stays so, "en-GB-scotland"
    Quality quality = Quality::Default;

    bool operator==(const SpeechVoice &) const = default;
};

struct Utterance
{
    QString text;
    QString language; // "ja-JP"
    // A voice's identifier; empty for whatever the service takes for the language.
    QString voice;
    // 0.5 is the normal rate, 0.3 slow and 0.7 fast. Others are brought into the
    // range that the service has.
    double rate = 0.5;
};

// Reads aloud. Main thread only, and nothing here blocks: the speech service is
// talked to elsewhere. Nothing is loaded, started or connected before the first
// call.
class SpeechSynthesizer
{
public:
    enum class End {
        Finished,
        Cancelled, // by someone else than the holder of the task
        Failed,    // there is no speech service, or it is gone; a later call tries anew
    };

    virtual ~SpeechSynthesizer() = default;

    // All voices in no particular order. Absent when there is no speech service
    // or it has not answered within 10 s; the reason is in the log.
    virtual Task readVoices(std::function<void(std::optional<std::vector<SpeechVoice>>)> done) = 0;

    // Says the text, once. `started` comes with the first sound, `ended` is the
    // terminal result. Dropping the task silences it at once. One text is spoken at
    // a time: another call while it is running ends it as Cancelled.
    virtual Task speak(const Utterance &utterance, std::function<void()> started,
                       std::function<void(End)> ended) = 0;
};

} // namespace nivora::platform
