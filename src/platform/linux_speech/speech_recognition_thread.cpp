#include "speech_recognition_thread.h"

#include "speech_recognition_work.h"

#include <malloc.h>

namespace nivora::linuxdesktop {

namespace {

std::span<const qint16> asNumbers(const QByteArray &samples)
{
    return {reinterpret_cast<const qint16 *>(samples.constData()),
            std::size_t(samples.size()) / sizeof(qint16)};
}

} // namespace

void RecognitionWork::append(const QByteArray &samples)
{
    const std::lock_guard lock(m_mutex);
    if (!m_audioEnded)
        m_samples += samples;
    m_changed.notify_one();
}

void RecognitionWork::endAudio()
{
    const std::lock_guard lock(m_mutex);
    m_audioEnded = true;
    m_changed.notify_one();
}

void RecognitionWork::giveUp()
{
    const std::lock_guard lock(m_mutex);
    m_givenUp = true;
    m_changed.notify_one();
}

std::optional<RecognitionWork::Sound> RecognitionWork::next()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_givenUp || m_audioEnded || !m_samples.isEmpty(); });
    if (m_givenUp)
        return std::nullopt;
    // A second at a time: giving up takes effect in between.
    constexpr qsizetype step = 32000;
    Sound sound{m_samples.first(std::min(step, m_samples.size())), false};
    m_samples.remove(0, sound.samples.size());
    sound.isLast = m_audioEnded && m_samples.isEmpty();
    return sound;
}

bool RecognitionWork::hasMore()
{
    const std::lock_guard lock(m_mutex);
    return !m_samples.isEmpty();
}

void RecognitionWork::run(const std::function<MadeDecoder()> &makeDecoder)
{
    const auto [decoder, failure] = makeDecoder();
    if (!decoder)
        return Q_EMIT result({{}, false, failure});
    QString told;
    while (const auto sound = next()) {
        if (!decoder->accept(asNumbers(sound->samples)))
            return Q_EMIT result({{}, false, Result::Failure::Engine});
        if (sound->isLast)
            return Q_EMIT result({decoder->finish(), true});
        if (hasMore())
            continue;
        if (const QString text = decoder->text(); text != told)
            Q_EMIT result({told = text, false});
    }
}

ThreadedRecognition::ThreadedRecognition(QThreadPool &pool, MakeDecoder makeDecoder,
                                         platform::SpeechRecognizer::Handler handler)
    // Its last user may be the thread.
    : m_work(new RecognitionWork, [](RecognitionWork *work) { work->deleteLater(); })
{
    // Queued, and so on the main thread, and not once the receiver is gone.
    QObject::connect(m_work.get(), &RecognitionWork::result, &m_receiver, std::move(handler),
                     Qt::QueuedConnection);
    pool.start([work = m_work, makeDecoder = std::move(makeDecoder)] {
        work->run(makeDecoder);
        // The C library would keep a third of what the model took, 30 MB, for later.
        malloc_trim(0);
    });
}

ThreadedRecognition::~ThreadedRecognition()
{
    m_work->giveUp();
}

void ThreadedRecognition::append(const QByteArray &samples)
{
    m_work->append(samples);
}

void ThreadedRecognition::endAudio()
{
    m_work->endAudio();
}

} // namespace nivora::linuxdesktop
