#pragma once

#include "speech_decoder.h"

#include "platform/speech_recognizer.h"

#include <QObject>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace nivora::linuxdesktop {

// What there is to recognise with.
struct MadeDecoder
{
    std::unique_ptr<SpeechDecoder> decoder;
    // Why there is none.
    platform::RecognitionResult::Failure failure = platform::RecognitionResult::Failure::Model;
};

// What a recognition and its thread share.
class RecognitionWork : public QObject
{
    Q_OBJECT

public:
    using Result = platform::RecognitionResult;

    void append(const QByteArray &samples);
    void endAudio();
    void giveUp();

    // Until the sound ends or the work is given up.
    void run(const std::function<MadeDecoder()> &makeDecoder);

Q_SIGNALS:
    void result(const nivora::platform::RecognitionResult &result);

private:
    struct Sound
    {
        QByteArray samples;
        bool isLast = false;
    };

    // Waits for sound; absent when the work was given up.
    std::optional<Sound> next();
    bool hasMore();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    QByteArray m_samples;
    bool m_audioEnded = false;
    bool m_givenUp = false;
};

} // namespace nivora::linuxdesktop
