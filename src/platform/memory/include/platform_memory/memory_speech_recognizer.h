#pragma once

#include "platform/speech_recognizer.h"

#include <QStringList>

namespace nivora::memory {

// Understands what a test lets it understand.
class MemorySpeechRecognizer final : public platform::SpeechRecognizer
{
public:
    ~MemorySpeechRecognizer() override;

    std::unique_ptr<platform::SpeechRecognition> recognize(const QString &locale,
                                                           Handler handler) override;

    // Whether there is a recogniser for any locale.
    void setInstalled(bool installed) { m_installed = installed; }
    // The locales that were asked for.
    const QStringList &locales() const { return m_locales; }

    // Of the recognition under way, which is the last one until it is destroyed.
    bool isRecognizing() const { return m_current; }
    QByteArray heard() const { return m_heard; }
    bool audioEnded() const { return m_audioEnded; }

    // Hands a result to it; false when there is none.
    bool deliver(const platform::RecognitionResult &result);

private:
    class Recognition;

    bool m_installed = true;
    QStringList m_locales;
    Recognition *m_current = nullptr;
    QByteArray m_heard;
    bool m_audioEnded = false;
};

} // namespace nivora::memory
