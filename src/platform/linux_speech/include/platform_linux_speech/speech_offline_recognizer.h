#pragma once

#include "platform/speech_recognizer.h"

#include <QThreadPool>

#include <memory>

namespace nivora::linuxdesktop {

// Recognisers that work without a network: PocketSphinx for English, Vosk for
// every language whose model the user has put in place, English included where
// PocketSphinx is missing.
class OfflineSpeechRecognizer final : public platform::SpeechRecognizer
{
public:
    struct Places
    {
        QString pocketsphinx; // folder of its American English
        QString voskModels;   // folder with one folder a locale: "zh-CN", "ja-JP"
        QString voskLibrary;  // file, or a name that the system's loader knows
    };
    // Where Debian has PocketSphinx's model, and app.nivora/speech in the user's
    // data folder; the library is taken from there too, before the system's.
    static Places defaultPlaces();

    explicit OfflineSpeechRecognizer(const Places &places = defaultPlaces());
    // Waits for a model that is just being read at most 2 s.
    ~OfflineSpeechRecognizer() override;

    // Looks at files. Vosk's library is loaded elsewhere, and only then it turns out
    // whether there is one.
    std::unique_ptr<platform::SpeechRecognition> recognize(const QString &locale,
                                                           Handler handler) override;

private:
    const Places m_places;
    std::unique_ptr<QThreadPool> m_pool;
};

} // namespace nivora::linuxdesktop
