#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace nivora::platform {

struct RecognitionResult
{
    enum class Failure {
        None,
        Unavailable, // there is no recogniser for the locale after all
        Model,       // the language's model cannot be read
        Engine,      // the recogniser gave up
    };

    QString text; // all of it from the beginning, not an increment; may be empty
    bool isFinal = false;
    Failure failure = Failure::None;

    bool operator==(const RecognitionResult &) const = default;
};

// One text being recognised. Destroying it gives up without waiting, and nothing
// is delivered afterwards.
class SpeechRecognition
{
public:
    virtual ~SpeechRecognition() = default;

    // More sound, in the format of AudioInput. May come before the recogniser is
    // ready: it is kept.
    virtual void append(const QByteArray &samples) = 0;

    // There is no more sound; the final result comes when all of it has been
    // recognised. A second call does nothing, and neither does append() from now on.
    virtual void endAudio() = 0;
};

// Turns speech into text, on this machine. Main thread only; the work is done
// elsewhere, and what it needs is loaded for a recognition and released with it.
class SpeechRecognizer
{
public:
    using Handler = std::function<void(const RecognitionResult &)>;

    virtual ~SpeechRecognizer() = default;

    // Null when there is no recogniser for the locale, "ja-JP", or it is not
    // available now. `handler` runs on the main thread, never from within a call
    // here, and not after a result that is final or a failure. It may destroy the
    // recognition.
    virtual std::unique_ptr<SpeechRecognition> recognize(const QString &locale,
                                                         Handler handler) = 0;
};

} // namespace nivora::platform
