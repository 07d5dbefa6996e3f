#include "stores/settings_store.h"

#include "core/prompts.h"

#include "platform/preferences.h"

#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr double defaultTimeoutSec = 120.0;
constexpr double defaultThresholdMs = 300.0;
constexpr double defaultSpeechRate = 0.5;

template<typename Value>
Setting<Value>::Write writer(platform::Preferences &preferences, const QString &key)
{
    return [&preferences, key](const Value &value) { preferences.set(key, value); };
}

Setting<bool> flag(platform::Preferences &preferences, const QString &key, bool fallback)
{
    return {[&preferences, key, fallback] { return preferences.boolean(key).value_or(fallback); },
            writer<bool>(preferences, key)};
}

Setting<QString> text(platform::Preferences &preferences, const QString &key,
                      const QString &fallback)
{
    return {[&preferences, key, fallback] { return preferences.string(key).value_or(fallback); },
            writer<QString>(preferences, key)};
}

// A stored number that is not above 0 makes no sense for any of these.
Setting<double> positive(platform::Preferences &preferences, const QString &key, double fallback)
{
    const auto read = [&preferences, key, fallback] {
        const double stored = preferences.number(key).value_or(fallback);
        return stored > 0 ? stored : fallback;
    };
    return {read, writer<double>(preferences, key)};
}

QUrl urlWithHost(const QString &string)
{
    const QUrl url(string, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

// The stored address, if it is one of the user's own and not the cloud's.
QString customAddress(platform::Preferences &preferences, const QUrl &cloudEndpoint)
{
    const QString stored = preferences.string(u"apiBaseURL"_s).value_or(QString());
    const QUrl url = urlWithHost(stored);
    if (url.isEmpty())
        return {};
    // Hosts compare as written; QUrl has put them into lower case.
    const QString cloudHost = cloudEndpoint.host();
    if (url.host() == cloudHost && stored.contains(cloudHost))
        return {};
    return stored;
}

// The language takes effect at the next start, where the toolkit reads it from
// the list of preferred languages.
void writeAppLanguage(platform::Preferences &preferences, const QString &raw)
{
    platform::PreferenceChange languages{u"AppleLanguages"_s, std::nullopt};
    if (raw != u"system")
        languages.value = QStringList{raw};
    const platform::PreferenceChange changes[] = {{u"appLanguage"_s, raw}, languages};
    preferences.apply(changes);
}

std::chrono::milliseconds milliseconds(double seconds)
{
    // The network layer counts in an int; 24 days are for ever there.
    const double limit = std::numeric_limits<int>::max();
    return std::chrono::milliseconds(qint64(std::clamp(std::round(seconds * 1000), 1.0, limit)));
}

} // namespace

SettingsStore::SettingsStore(platform::Preferences &preferences, KeychainStore &keychain,
                             QUrl cloudEndpoint)
    : useCustomBackend(
          [&preferences, cloudEndpoint] {
              return preferences.boolean(u"useCustomBackend"_s)
                  .value_or(!customAddress(preferences, cloudEndpoint).isEmpty());
          },
          writer<bool>(preferences, u"useCustomBackend"_s))
    , apiBaseURLString(
          [&preferences, cloudEndpoint] { return customAddress(preferences, cloudEndpoint); },
          writer<QString>(preferences, u"apiBaseURL"_s))
    , modelName(text(preferences, u"modelName"_s, u"auto"_s))
    , byoPromptTemplate(text(preferences, u"byoPromptTemplate"_s, defaultPromptTemplate()))
    , requestTimeoutSec(positive(preferences, u"requestTimeoutSec"_s, defaultTimeoutSec))
    , liveTranslate(flag(preferences, u"liveTranslate"_s, false))
    , autoCopyOnFinish(flag(preferences, u"autoCopyOnFinish"_s, false))
    , closeOnResignFocus(flag(preferences, u"closeOnResignFocus"_s, true))
    , doubleTapThresholdMs(positive(preferences, u"doubleTapThresholdMs"_s, defaultThresholdMs))
    , defaultTargetLanguageRaw(text(preferences, u"defaultTargetLanguage"_s, u"chinese"_s))
    , secondaryLanguageRaw(text(preferences, u"secondaryLanguage"_s, u"japanese"_s))
    , appLanguageRaw(
          [&preferences] { return preferences.string(u"appLanguage"_s).value_or(u"system"_s); },
          [&preferences](const QString &raw) { writeAppLanguage(preferences, raw); })
    , themeModeRaw(text(preferences, u"themeMode"_s, u"system"_s))
    , readingStyleRaw(text(preferences, u"readingStyle"_s, u"hiragana"_s))
    , showBackTranslation(flag(preferences, u"showBackTranslation"_s, true))
    , japaneseStyleRaw(text(preferences, u"japaneseStyle"_s, u"normal"_s))
    , speechRate(positive(preferences, u"speechRate"_s, defaultSpeechRate))
    , autoSpeak(flag(preferences, u"autoSpeak"_s, false))
    , speechVoiceID(text(preferences, u"speechVoiceID"_s, QString()))
    , hasCompletedOnboarding(flag(preferences, u"hasCompletedOnboarding"_s, false))
    , saveHistory(flag(preferences, u"saveHistory"_s, true))
    , m_keychain(keychain)
    , m_cloudEndpoint(std::move(cloudEndpoint))
{
    const auto follow = [this](const QString &key, auto &setting) {
        m_refresh.insert(key, [&setting] { setting.refresh(); });
    };
    follow(u"useCustomBackend"_s, useCustomBackend);
    follow(u"modelName"_s, modelName);
    follow(u"byoPromptTemplate"_s, byoPromptTemplate);
    follow(u"requestTimeoutSec"_s, requestTimeoutSec);
    follow(u"liveTranslate"_s, liveTranslate);
    follow(u"autoCopyOnFinish"_s, autoCopyOnFinish);
    follow(u"closeOnResignFocus"_s, closeOnResignFocus);
    follow(u"doubleTapThresholdMs"_s, doubleTapThresholdMs);
    follow(u"defaultTargetLanguage"_s, defaultTargetLanguageRaw);
    follow(u"secondaryLanguage"_s, secondaryLanguageRaw);
    follow(u"appLanguage"_s, appLanguageRaw);
    follow(u"themeMode"_s, themeModeRaw);
    follow(u"readingStyle"_s, readingStyleRaw);
    follow(u"showBackTranslation"_s, showBackTranslation);
    follow(u"japaneseStyle"_s, japaneseStyleRaw);
    follow(u"speechRate"_s, speechRate);
    follow(u"autoSpeak"_s, autoSpeak);
    follow(u"speechVoiceID"_s, speechVoiceID);
    follow(u"hasCompletedOnboarding"_s, hasCompletedOnboarding);
    follow(u"saveHistory"_s, saveHistory);
    // Where no backend was chosen, an address of the user's own is a choice.
    m_refresh.insert(u"apiBaseURL"_s, [this] {
        apiBaseURLString.refresh();
        useCustomBackend.refresh();
    });
    m_watch = preferences.watch([this](const QStringList &keys) { takeOver(keys); });
}

void SettingsStore::takeOver(const QStringList &keys)
{
    for (const QString &key : keys) {
        if (const auto refresh = m_refresh.value(key))
            refresh();
    }
}

QString SettingsStore::byoApiKey() const
{
    if (!m_byoApiKey)
        m_byoApiKey = m_keychain.read(KeychainStore::byoApiKeyAccount());
    return *m_byoApiKey.value_or(platform::SecretText());
}

void SettingsStore::setByoApiKey(const QString &key)
{
    m_byoApiKey = key;
    Q_EMIT m_byoApiKeyNotifier.changed();
    m_keychain.write(KeychainStore::byoApiKeyAccount(), key);
}

QString SettingsStore::defaultPromptTemplate()
{
    return PromptTemplate::defaultTranslate();
}

QUrl SettingsStore::apiBaseURL() const
{
    const QUrl own = useCustomBackend.value() ? urlWithHost(apiBaseURLString.value()) : QUrl();
    return own.isEmpty() ? m_cloudEndpoint : own;
}

TranslationConfig SettingsStore::config() const
{
    TranslationConfig config;
    config.cloud = !useCustomBackend.value();
    config.apiBaseURL = apiBaseURL();
    config.modelName = modelName.value();
    config.requestTimeout = milliseconds(requestTimeoutSec.value());
    config.translateTemplate = byoPromptTemplate.value();
    config.apiToken = config.cloud ? (*m_keychain.read(KeychainStore::sessionTokenAccount())
                                           .value_or(platform::SecretText()))
                                         .toUtf8()
                                   : byoApiKey().toUtf8();
    return config;
}

} // namespace nivora
