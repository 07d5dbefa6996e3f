#include "audio_capture.h"

#include <QAudioDevice>
#include <QMediaDevices>

#include <algorithm>

namespace nivora::linuxdesktop {

using namespace std::chrono_literals;

namespace {

// A microphone that hears nothing still delivers silence.
constexpr auto silenceLimit = 3s;
constexpr auto presencePeriod = 1s;

QAudioDevice chosenDevice(const QByteArray &identifier)
{
    const auto devices = QMediaDevices::audioInputs();
    const auto chosen = std::ranges::find_if(
        devices, [&](const QAudioDevice &device) { return device.id() == identifier; });
    return chosen == devices.end() ? QMediaDevices::defaultAudioInput() : *chosen;
}

} // namespace

AudioCapture::AudioCapture(const QByteArray &device)
    : m_device(device)
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(silenceLimit);
    m_silence.callOnTimeout(this, [this] { fail(m_hasHeard ? Failure::Lost : Failure::Refused); });
    m_presence.setInterval(presencePeriod);
    m_presence.callOnTimeout(this, [this] { lookWhetherGone(); });
}

AudioCapture::~AudioCapture() = default;

void AudioCapture::start(quint64 recording)
{
    close();
    m_recording = recording;
    m_hasHeard = false;
    const QAudioDevice device = chosenDevice(m_device);
    if (device.isNull())
        return fail(Failure::NoDevice);
    QAudioFormat format;
    format.setSampleRate(platform::AudioInput::sampleRate);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    m_source = std::make_unique<QAudioSource>(device, format);
    m_stream = m_source->start();
    if (!m_stream || m_source->error() != QAudio::NoError)
        return fail(Failure::Refused);
    connect(m_stream, &QIODevice::readyRead, this, [this] { read(); });
    // Queued, since the source must not be deleted by what it calls.
    connect(
        m_source.get(), &QAudioSource::stateChanged, this,
        [this, recording](QAudio::State state) {
            if (state == QAudio::StoppedState && m_recording == recording)
                fail(m_hasHeard ? Failure::Lost : Failure::Refused);
        },
        Qt::QueuedConnection);
    m_openDevice = device.id();
    m_presence.start();
    m_silence.start();
}

void AudioCapture::stop(quint64 recording)
{
    if (m_recording == recording)
        close();
}

void AudioCapture::read()
{
    const QByteArray samples = m_stream->readAll();
    if (samples.isEmpty())
        return;
    m_hasHeard = true;
    m_silence.start();
    Q_EMIT heard(m_recording, samples);
}

// Asked regularly, since Qt 6.4 knows of the change but does not always signal it.
// Where the microphone goes away the sound server goes on with whatever else there
// is, be it what comes out of the loudspeaker.
void AudioCapture::lookWhetherGone()
{
    const auto devices = QMediaDevices::audioInputs();
    const bool isThere = std::ranges::any_of(
        devices, [this](const QAudioDevice &device) { return device.id() == m_openDevice; });
    if (!isThere)
        fail(Failure::Lost);
}

void AudioCapture::fail(Failure failure)
{
    const quint64 recording = m_recording;
    close();
    Q_EMIT failed(recording, failure);
}

void AudioCapture::close()
{
    m_recording = 0;
    m_silence.stop();
    m_stream = nullptr;
    m_presence.stop();
    if (m_source) {
        m_source->disconnect(this);
        m_source->stop();
        m_source.reset();
    }
}

} // namespace nivora::linuxdesktop
