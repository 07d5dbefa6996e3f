#pragma once

#include "session/translation_view_model.h"

#include "core/reading_service.h"
#include "core/translation_engine.h"
#include "desktop/speech_input_service.h"
#include "desktop/speech_service.h"
#include "stores/settings_store.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_memory/memory_audio_input.h"
#include "platform_memory/memory_clipboard.h"
#include "platform_memory/memory_japanese_tokenizer.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_secret_store.h"
#include "platform_memory/memory_settings_panes.h"
#include "platform_memory/memory_speech_recognizer.h"
#include "platform_memory/memory_speech_synthesizer.h"

#include <QTest>

#include <memory>

namespace nivora::test {

inline QJsonObject bodyOf(const localcloud::Request &request)
{
    return QJsonDocument::fromJson(request.body).object();
}

// What every test of the session works with: a real engine that talks to a real
// server. `init` calls start().
class SessionTest : public QObject
{
protected:
    void start()
    {
        m_session.reset();
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_preferences = std::make_unique<memory::MemoryPreferences>();
        m_secrets = std::make_unique<memory::MemorySecretStore>();
        m_clipboard = std::make_unique<memory::MemoryClipboard>();
        m_panes = std::make_unique<memory::MemorySettingsPanes>();
        m_readings.reset();
        m_tokenizer = std::make_unique<memory::MemoryJapaneseTokenizer>();
        m_readings = std::make_unique<ReadingService>(*m_tokenizer);
        m_speech.reset();
        m_synthesizer = std::make_unique<memory::MemorySpeechSynthesizer>();
        m_speech = std::make_unique<SpeechService>(*m_synthesizer);
        m_speechInput.reset();
        m_microphone = std::make_unique<memory::MemoryAudioInput>();
        m_recognizer = std::make_unique<memory::MemorySpeechRecognizer>();
        m_speechInput = std::make_unique<SpeechInputService>(*m_microphone, *m_recognizer);
        m_keychain = std::make_unique<KeychainStore>(*m_secrets);
        m_settings = std::make_unique<SettingsStore>(*m_preferences, *m_keychain, m_server->url());
        // A request that only the tests of it expect.
        m_settings->showBackTranslation.set(false);
        m_engine = std::make_unique<TranslationEngine>();
        m_session = std::make_unique<TranslationViewModel>(
            TranslationViewModel::Parts{.engine = *m_engine,
                                        .settings = *m_settings,
                                        .readings = *m_readings,
                                        .clipboard = *m_clipboard,
                                        .settingsPanes = *m_panes,
                                        .speech = m_speech.get(),
                                        .speechInput = m_speechInput.get()});
        m_recorded.clear();
        m_session->historyRecorder = [this](const QString &source, const QString &translation,
                                            Language from, Language to) {
            m_recorded << QStringList{source, translation, rawValue(from), rawValue(to)}.join(u'|');
        };
    }

    // A text from outside, with its translation in one piece.
    void translate(const QString &source, const QString &translation, bool hasInsertTarget = true)
    {
        m_server->enqueue(localcloud::eventStream({translation}));
        m_session->setSource(source, hasInsertTarget, std::nullopt);
        QTRY_COMPARE(phase(), Phase::Kind::Done);
    }

    Phase::Kind phase() const { return m_session->phase().kind; }

    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<memory::MemoryPreferences> m_preferences;
    std::unique_ptr<memory::MemorySecretStore> m_secrets;
    std::unique_ptr<memory::MemoryClipboard> m_clipboard;
    std::unique_ptr<memory::MemorySettingsPanes> m_panes;
    std::unique_ptr<memory::MemoryJapaneseTokenizer> m_tokenizer;
    std::unique_ptr<ReadingService> m_readings;
    std::unique_ptr<memory::MemorySpeechSynthesizer> m_synthesizer;
    std::unique_ptr<SpeechService> m_speech;
    std::unique_ptr<memory::MemoryAudioInput> m_microphone;
    std::unique_ptr<memory::MemorySpeechRecognizer> m_recognizer;
    std::unique_ptr<SpeechInputService> m_speechInput;
    std::unique_ptr<KeychainStore> m_keychain;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<TranslationViewModel> m_session;
    QStringList m_recorded; // what went into the history
};

} // namespace nivora::test
