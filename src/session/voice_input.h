#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace nivora {

class SpeechInputService;

namespace platform {
class SettingsPanes;
}

// Dictation into the source box: puts what is heard behind what was there.
class VoiceInput : public QObject
{
    Q_OBJECT

public:
    // `service` may be absent, where nothing can be dictated. `locale` is asked at
    // the start of each dictation.
    VoiceInput(SpeechInputService *service, platform::SettingsPanes &settingsPanes,
               std::function<QString()> locale);
    ~VoiceInput() override;

    bool isListening() const { return m_isListening; }
    QString error() const { return m_error; } // empty when all is well
    bool errorOpensSettings() const { return m_errorOpensSettings; }

    // Begins behind `sourceText`, or ends.
    void toggle(const QString &sourceText);
    // Closes the microphone, and is deaf to what was said before.
    void abandon();
    void clearError();
    void openSettings();

Q_SIGNALS:
    void isListeningChanged();
    void errorChanged(); // or what it opens
    // What the source box is to hold now.
    void heard(const QString &text, bool isFinal);

private:
    void hear(const QString &text, bool isFinal);
    void fail(const QString &message, bool settingsHelp);
    void onStateChange(bool isListening);
    void setListening(bool isListening);
    void setError(const QString &message, bool opensSettings);

    SpeechInputService *m_service;
    platform::SettingsPanes &m_settingsPanes;
    bool m_isWanted = false; // whether anybody still waits for what is heard
    QString m_base;          // what the source box held when the dictation began
    bool m_isListening = false;
    QString m_error;
    bool m_errorOpensSettings = false;
};

} // namespace nivora
