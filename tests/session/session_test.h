#pragma once

#include "session/translation_view_model.h"

#include "core/reading_service.h"
#include "core/translation_engine.h"
#include "desktop/speech_input_service.h"
#include "desktop/speech_service.h"
#include "stores/settings_store.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_linux_network/qt_http_client.h"
#include "platform_memory/memory_desktop.h"

#include <QTest>

#include <memory>

namespace nivora::test {

inline QJsonObject bodyOf(const localcloud::Request &request)
{
    return QJsonDocument::fromJson(request.body).object();
}

// What every test of the session works with: a desktop in memory, and a real engine
// that talks to a real server. `init` calls start().
class SessionTest : public QObject
{
protected:
    void start()
    {
        m_session.reset();
        m_readings.reset();
        m_speech.reset();
        m_speechInput.reset();
        m_server = std::make_unique<localcloud::Server>();
        QVERIFY(m_server->listen());
        m_desktop = std::make_unique<memory::MemoryDesktop>();
        m_keychain = std::make_unique<KeychainStore>(m_desktop->secrets);
        m_settings =
            std::make_unique<SettingsStore>(m_desktop->preferences, *m_keychain, m_server->url());
        // A request that only the tests of it expect.
        m_settings->showBackTranslation.set(false);
        m_engine = std::make_unique<TranslationEngine>(m_network);
        m_readings = std::make_unique<ReadingService>(m_desktop->japaneseTokenizer);
        m_speech = std::make_unique<SpeechService>(m_desktop->speechSynthesizer);
        m_speechInput = std::make_unique<SpeechInputService>(m_desktop->audioInput,
                                                             m_desktop->speechRecognizer);
        m_session = std::make_unique<TranslationViewModel>(
            TranslationViewModel::Parts{.engine = *m_engine,
                                        .settings = *m_settings,
                                        .readings = *m_readings,
                                        .clipboard = m_desktop->clipboard,
                                        .settingsPanes = m_desktop->settingsPanes,
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

    linuxdesktop::QtHttpClient m_network;
    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<memory::MemoryDesktop> m_desktop;
    std::unique_ptr<KeychainStore> m_keychain;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<ReadingService> m_readings;
    std::unique_ptr<SpeechService> m_speech;
    std::unique_ptr<SpeechInputService> m_speechInput;
    std::unique_ptr<TranslationViewModel> m_session;
    QStringList m_recorded; // what went into the history
};

} // namespace nivora::test
