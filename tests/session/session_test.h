#pragma once

#include "session/translation_view_model.h"

#include "core/translation_engine.h"
#include "stores/settings_store.h"

#include "localcloud/event_stream.h"
#include "localcloud/server.h"
#include "platform_memory/memory_clipboard.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_secret_store.h"

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
        m_keychain = std::make_unique<KeychainStore>(*m_secrets);
        m_settings = std::make_unique<SettingsStore>(*m_preferences, *m_keychain, m_server->url());
        m_engine = std::make_unique<TranslationEngine>();
        m_session = std::make_unique<TranslationViewModel>(*m_engine, *m_settings, *m_clipboard);
        m_recorded.clear();
        m_session->historyRecorder = [this](const QString &source, const QString &translation,
                                            Language from, Language to) {
            m_recorded << QStringList{source, translation, rawValue(from), rawValue(to)}.join(u'|');
        };
    }

    Phase::Kind phase() const { return m_session->phase().kind; }

    std::unique_ptr<localcloud::Server> m_server;
    std::unique_ptr<memory::MemoryPreferences> m_preferences;
    std::unique_ptr<memory::MemorySecretStore> m_secrets;
    std::unique_ptr<memory::MemoryClipboard> m_clipboard;
    std::unique_ptr<KeychainStore> m_keychain;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<TranslationViewModel> m_session;
    QStringList m_recorded; // what went into the history
};

} // namespace nivora::test
