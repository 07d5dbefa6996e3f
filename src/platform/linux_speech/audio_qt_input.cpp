#include "platform_linux_speech/audio_qt_input.h"

#include "platform/log.h"

#include "audio_capture.h"

#include <QTimer>

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// The sound server may not answer at all.
constexpr auto startLimit = 5s;

class Recording final : public platform::Operation
{
public:
    using Failure = platform::AudioInput::Failure;

    Recording(AudioCapture &capture, quint64 number,
              std::function<void(const QByteArray &)> samples, std::function<void(Failure)> failed)
        : m_capture(capture)
        , m_number(number)
        , m_samples(std::move(samples))
        , m_failed(std::move(failed))
    {
        connect(&capture, &AudioCapture::heard, this,
                [this](quint64 recording, const QByteArray &heard) {
                    if (recording != m_number)
                        return;
                    m_limit.stop();
                    deliver([&] { m_samples(heard); });
                });
        connect(&capture, &AudioCapture::failed, this, [this](quint64 recording, Failure failure) {
            if (recording == m_number)
                fail(failure);
        });
        m_limit.setSingleShot(true);
        m_limit.callOnTimeout(this, [this] { fail(Failure::NoDevice); });
        m_limit.start(startLimit);
        QMetaObject::invokeMethod(&capture, [&capture, number] { capture.start(number); });
    }

private:
    void fail(Failure failure)
    {
        finish([&] { m_failed(failure); });
    }
    void stop() override
    {
        m_limit.stop();
        QMetaObject::invokeMethod(
            &m_capture, [&capture = m_capture, number = m_number] { capture.stop(number); });
    }

    AudioCapture &m_capture;
    const quint64 m_number;
    std::function<void(const QByteArray &)> m_samples;
    std::function<void(Failure)> m_failed;
    QTimer m_limit;
};

} // namespace

QtAudioInput::QtAudioInput(const QByteArray &device)
    : m_device(device)
{
}

QtAudioInput::~QtAudioInput()
{
    if (!m_thread)
        return;
    m_thread->quit();
    if (m_thread->wait(QDeadlineTimer(2s)))
        return;
    // A thread that waits for the sound server cannot be ended, nor may its object be.
    qCWarning(log::app, "The sound server's thread does not end");
    m_thread.release();
}

AudioCapture &QtAudioInput::capture()
{
    if (!m_thread) {
        m_thread = std::make_unique<QThread>();
        m_thread->setObjectName(u"microphone");
        m_capture = new AudioCapture(m_device);
        m_capture->moveToThread(m_thread.get());
        QObject::connect(m_thread.get(), &QThread::finished, m_capture, &QObject::deleteLater);
        m_thread->start();
    }
    return *m_capture;
}

platform::Task QtAudioInput::requestAccess(std::function<void(bool)> done)
{
    return platform::delay({}, [done = std::move(done)] { done(true); });
}

platform::Task QtAudioInput::record(std::function<void(const QByteArray &)> samples,
                                    std::function<void(Failure)> failed)
{
    return platform::Task(
        new Recording(capture(), ++m_recordings, std::move(samples), std::move(failed)));
}

} // namespace nivora::linuxdesktop
