#pragma once

#include "platform/audio_input.h"

#include <QAudioSource>
#include <QObject>
#include <QTimer>

#include <memory>

namespace nivora::linuxdesktop {

// Records on the thread that it lives in. Recordings have numbers, which the
// answers name; a new one ends the one before.
class AudioCapture : public QObject
{
    Q_OBJECT

public:
    using Failure = platform::AudioInput::Failure;

    explicit AudioCapture(const QByteArray &device);
    ~AudioCapture() override;

    void start(quint64 recording);
    void stop(quint64 recording);

Q_SIGNALS:
    void heard(quint64 recording, const QByteArray &samples);
    void failed(quint64 recording, nivora::platform::AudioInput::Failure failure);

private:
    void read();
    void lookWhetherGone();
    void fail(Failure failure);
    void close();

    const QByteArray m_device;
    quint64 m_recording = 0; // 0 for none
    bool m_hasHeard = false;
    QByteArray m_openDevice;
    std::unique_ptr<QAudioSource> m_source;
    QIODevice *m_stream = nullptr; // the source's
    QTimer m_silence{this};
    QTimer m_presence{this}; // while recording
};

} // namespace nivora::linuxdesktop
