#pragma once

#include "stores/keychain_store.h"
#include "stores/setting.h"

#include "core/translation_config.h"

#include "platform/task.h"

#include <QHash>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace nivora {

namespace platform {
class Preferences;
}

// Every preference of the user. Reads all of them once and writes none; each
// assignment goes through to the preferences at once. What another process stores
// meanwhile is taken over; the key of the user's own endpoint is not watched. It is also the only
// place that decides which backend, address and token a request uses.
class SettingsStore
{
public:
    // `cloudEndpoint`: origin of the cloud service, without a path.
    SettingsStore(platform::Preferences &preferences, KeychainStore &keychain, QUrl cloudEndpoint);

    Setting<bool> useCustomBackend;
    Setting<QString> apiBaseURLString;
    Setting<QString> modelName;
    Setting<QString> byoPromptTemplate;
    Setting<double> requestTimeoutSec; // seconds
    Setting<bool> liveTranslate;
    Setting<bool> autoCopyOnFinish;
    Setting<bool> closeOnResignFocus;
    Setting<double> doubleTapThresholdMs;      // milliseconds
    Setting<QString> defaultTargetLanguageRaw; // raw values of Language
    Setting<QString> secondaryLanguageRaw;
    Setting<QString>
        appLanguageRaw; // "system", "zh-Hans", "zh-Hant", "ja", "en"; from the next start
    Setting<QString> themeModeRaw;    // "system", "light", "dark"
    Setting<QString> readingStyleRaw; // "off", "romaji", "hiragana"
    Setting<bool> showBackTranslation;
    Setting<QString> japaneseStyleRaw; // "normal", "polite", "business"
    Setting<double> speechRate;        // 0.5 is the normal rate
    Setting<bool> autoSpeak;
    Setting<QString> speechVoiceID; // empty: chosen automatically
    Setting<bool> hasCompletedOnboarding;
    Setting<bool> saveHistory;

    // The key for the user's own endpoint lives in the keychain alone. It is
    // read from there at its first use, so that starting does not wait for it;
    // after an assignment the assigned value stands.
    QString byoApiKey() const;
    void setByoApiKey(const QString &key);
    SettingNotifier &byoApiKeyNotifier() { return m_byoApiKeyNotifier; }

    static QString defaultPromptTemplate();

    QUrl cloudEndpoint() const { return m_cloudEndpoint; }

    // The endpoint in force: the user's own if it is in use and has a host,
    // otherwise the cloud's.
    QUrl apiBaseURL() const;

    // Built afresh at each call. The cloud's token comes from the keychain each
    // time, and it never goes to an endpoint of the user's own.
    TranslationConfig config() const;

private:
    void takeOver(const QStringList &keys);

    KeychainStore &m_keychain;
    QUrl m_cloudEndpoint;
    mutable std::optional<platform::SecretText> m_byoApiKey;
    SettingNotifier m_byoApiKeyNotifier;
    QHash<QString, std::function<void()>> m_refresh; // by the stored key
    platform::Task m_watch;
};

} // namespace nivora
