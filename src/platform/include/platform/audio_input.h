#pragma once

#include "platform/task.h"

#include <QByteArray>

#include <functional>

namespace nivora::platform {

// The user's microphone. Main thread only, and nothing here blocks: the sound
// service is talked to elsewhere, and not before the first call.
class AudioInput
{
public:
    enum class Failure {
        NoDevice, // there is no microphone, or no sound service
        Refused,  // the microphone cannot be opened
        Lost,     // it went away while it was in use
    };

    // Of the samples: signed, of this machine's byte order, one channel.
    static constexpr int sampleRate = 16000; // Hz
    static constexpr int bytesPerSample = 2;

    virtual ~AudioInput() = default;

    // Whether this program may use a microphone; asks the user where the desktop
    // has such a question.
    virtual Task requestAccess(std::function<void(bool)> done) = 0;

    // Records until the task is dropped. `samples` comes several times a second
    // with what was heard since; a failure is the terminal result, and comes within
    // 5 s where no sound arrives at all.
    virtual Task record(std::function<void(const QByteArray &)> samples,
                        std::function<void(Failure)> failed) = 0;
};

} // namespace nivora::platform
