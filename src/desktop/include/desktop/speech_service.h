#pragma once

#include "platform/speech_synthesizer.h"
#include "platform/task.h"

#include <QObject>

#include <optional>
#include <vector>

namespace nivora {

// Reads text aloud and chooses the voice. The program has one, shared by the
// session and the settings. Main thread only; nothing here waits, and the speech
// service is not touched before the first call that needs it.
class SpeechService : public QObject
{
    Q_OBJECT

public:
    // Borrows the synthesizer.
    explicit SpeechService(platform::SpeechSynthesizer &synth);

    // Speech is under way: from its first sound to its end.
    bool isSpeaking() const { return m_isSpeaking; }

    // False once the speech service could not be reached, until it could again.
    // speak() may be called all the same, and tries anew.
    bool isAvailable() const { return m_isAvailable; }

    // Reads the voices, unless they are known; voicesChanged() or
    // availabilityChanged(false) follows.
    void loadVoices();
    bool hasVoices() const { return m_voices.has_value(); }

    // Of the voices known so far, those of exactly this language, "ja-JP": the
    // better quality first, then by name.
    std::vector<platform::SpeechVoice> voices(const QString &language) const;

    // The voice to use: the preferred one, whatever its language, if there is a
    // voice of this identifier; else the best of the language; else one of a
    // related language. `preferredID` may be empty.
    std::optional<platform::SpeechVoice> voice(const QString &language,
                                               const QString &preferredID = {}) const;

    // Stops at once what is being said, and says this, in the voice that voice()
    // gives once the voices are known. `rate` is SettingsStore's speechRate as it is.
    void speak(const QString &text, const QString &language, const QString &preferredID,
               double rate);

    // At once. Does nothing when nothing is being said.
    void stop();

Q_SIGNALS:
    void isSpeakingChanged(bool isSpeaking);
    void availabilityChanged(bool isAvailable);
    void voicesChanged();

private:
    struct Request
    {
        platform::Utterance utterance;
        QString preferredID;
    };

    void readVoices();
    void say(const Request &request);
    void ended(platform::SpeechSynthesizer::End end);
    void setSpeaking(bool isSpeaking);
    void setAvailable(bool isAvailable);

    platform::SpeechSynthesizer &m_synth;
    bool m_isSpeaking = false;
    bool m_isAvailable = true;
    std::optional<std::vector<platform::SpeechVoice>> m_voices;
    std::optional<Request> m_waiting; // for the voices
    platform::Task m_voicesTask;
    platform::Task m_speech;
};

} // namespace nivora
