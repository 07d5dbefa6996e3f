#include "voice_input.h"

#include "desktop/speech_input_service.h"

#include "platform/settings_panes.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

VoiceInput::VoiceInput(SpeechInputService *service, platform::SettingsPanes &settingsPanes,
                       std::function<QString()> locale)
    : m_service(service)
    , m_settingsPanes(settingsPanes)
{
    if (!m_service)
        return;
    m_service->localeProvider = std::move(locale);
    m_service->onStateChange = [this](bool isListening) { onStateChange(isListening); };
    m_service->onPartial = [this](const QString &text) { hear(text, false); };
    m_service->onFinal = [this](const QString &text) { hear(text, true); };
    m_service->onError = [this](const QString &message) { fail(message, false); };
    m_service->onRefused = [this](const QString &message) { fail(message, true); };
}

VoiceInput::~VoiceInput()
{
    if (!m_service)
        return;
    m_service->localeProvider = [] { return u"zh-CN"_s; };
    m_service->onStateChange = [](bool) {};
    m_service->onPartial = [](const QString &) {};
    m_service->onFinal = [](const QString &) {};
    m_service->onError = [](const QString &) {};
    m_service->onRefused = [](const QString &) {};
}

void VoiceInput::toggle(const QString &sourceText)
{
    setError({}, m_errorOpensSettings);
    if (!m_isListening)
        m_base = sourceText;
    if (!m_service)
        return;
    if (m_service->isListening()) {
        m_service->stop();
    } else {
        m_isWanted = true;
        m_service->start();
    }
}

void VoiceInput::abandon()
{
    m_isWanted = false;
    if (m_service)
        m_service->stop();
}

void VoiceInput::onStateChange(bool isListening)
{
    // The microphone was granted to a dictation that was given up meanwhile.
    if (isListening && !m_isWanted)
        return m_service->stop();
    setListening(isListening);
}

void VoiceInput::hear(const QString &text, bool isFinal)
{
    if (m_isWanted)
        Q_EMIT heard(m_base + text, isFinal);
}

void VoiceInput::clearError()
{
    setError({}, false);
}

void VoiceInput::openSettings()
{
    if (!m_settingsPanes.open(platform::SettingsPane::Microphone))
        setError(tr("没有找到系统设置程序"), false);
}

void VoiceInput::fail(const QString &message, bool settingsHelp)
{
    setListening(false);
    if (!m_isWanted)
        return;
    setError(message, settingsHelp);
}

void VoiceInput::setListening(bool isListening)
{
    if (std::exchange(m_isListening, isListening) != isListening)
        Q_EMIT isListeningChanged();
}

void VoiceInput::setError(const QString &message, bool opensSettings)
{
    if (m_error == message && m_errorOpensSettings == opensSettings)
        return;
    m_error = message;
    m_errorOpensSettings = opensSettings;
    Q_EMIT errorChanged();
}

} // namespace nivora
