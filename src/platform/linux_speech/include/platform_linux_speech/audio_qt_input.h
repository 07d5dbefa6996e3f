#pragma once

#include "platform/audio_input.h"

#include <QThread>

#include <memory>

namespace nivora::linuxdesktop {

class AudioCapture;

// The sound server's microphone, by Qt Multimedia. A thread of its own talks to the
// sound server, from the first recording on. This desktop has no question to ask
// before a program may listen, so access is always granted.
class QtAudioInput final : public platform::AudioInput
{
public:
    // `device` is a device's identifier; empty for the user's default microphone,
    // and so is one that is not there.
    explicit QtAudioInput(const QByteArray &device = {});
    // Waits for the sound server at most 2 s.
    ~QtAudioInput() override;

    platform::Task requestAccess(std::function<void(bool)> done) override;
    platform::Task record(std::function<void(const QByteArray &)> samples,
                          std::function<void(Failure)> failed) override;

private:
    AudioCapture &capture();

    const QByteArray m_device;
    std::unique_ptr<QThread> m_thread;
    AudioCapture *m_capture = nullptr; // lives in the thread and ends with it
    quint64 m_recordings = 0;
};

} // namespace nivora::linuxdesktop
