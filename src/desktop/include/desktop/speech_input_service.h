#pragma once

#include "platform/audio_input.h"
#include "platform/speech_recognizer.h"
#include "platform/task.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace nivora {

// Turns what the user says into text. Main thread only; nothing here waits, and
// neither microphone nor recogniser is touched before start().
class SpeechInputService : public QObject
{
    Q_OBJECT

public:
    // Borrows both.
    SpeechInputService(platform::AudioInput &audio, platform::SpeechRecognizer &recognizer);
    ~SpeechInputService() override;

    // Asked at the start of each dictation for its locale, "ja-JP". Never empty.
    std::function<QString()> localeProvider;
    // The text so far: the whole of this dictation, never empty.
    std::function<void(const QString &)> onPartial;
    // The finished text, never empty.
    std::function<void(const QString &)> onFinal;
    // isListening() has changed.
    std::function<void(bool)> onStateChange;
    // A message for the user.
    std::function<void(const QString &)> onError;
    // The same, where the desktop keeps the microphone from this program: its
    // settings may help.
    std::function<void(const QString &)> onRefused;

    // A dictation is under way, or the permission for it is awaited.
    bool isListening() const { return m_isListening; }

    // Begins a dictation: listens as soon as the microphone is granted. Does nothing
    // while one is under way; gives up what an earlier one still had to deliver.
    void start();

    // Closes the microphone; what has been said is still delivered. While the
    // permission is awaited this ends no more than isListening(): once granted, the
    // dictation begins and isListening() is true again. Does nothing when idle.
    void stop();

Q_SIGNALS:
    void isListeningChanged(bool isListening);

private:
    void beginSession();
    void deliver(const platform::RecognitionResult &result);
    void deliver(const QString &text, bool final, const std::optional<QString> &error);
    static std::optional<QString> errorOf(platform::RecognitionResult::Failure failure);
    void microphoneFailed(platform::AudioInput::Failure failure);
    void giveUp(const std::function<void(const QString &)> &tell, const QString &message);
    void teardown();
    void setListening(bool isListening);

    platform::AudioInput &m_audio;
    platform::SpeechRecognizer &m_recognizer;
    bool m_isListening = false;
    platform::Task m_permission;
    platform::Task m_recording;
    std::unique_ptr<platform::SpeechRecognition> m_recognition;
};

} // namespace nivora
