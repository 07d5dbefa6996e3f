#pragma once

#include "platform/speech_recognizer.h"

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace nivora::linuxdesktop {

class RecognitionWork;
struct MadeDecoder;

// Lets a decoder work on a thread of a pool. Sound that comes before it is ready,
// or faster than it understands, is kept.
class ThreadedRecognition final : public platform::SpeechRecognition
{
public:
    // Runs on the pool's thread.
    using MakeDecoder = std::function<MadeDecoder()>;

    // `pool` is borrowed while its threads run. A recognition that is given up still
    // ends the step that it is in.
    ThreadedRecognition(QThreadPool &pool, MakeDecoder makeDecoder,
                        platform::SpeechRecognizer::Handler handler);
    ~ThreadedRecognition() override;

    void append(const QByteArray &samples) override;
    void endAudio() override;

private:
    std::shared_ptr<RecognitionWork> m_work;
    QObject m_receiver;
};

} // namespace nivora::linuxdesktop
