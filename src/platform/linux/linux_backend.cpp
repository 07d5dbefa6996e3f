#include "platform_linux/linux_backend.h"

#include "platform_linux/atspi_accessibility.h"
#include "platform_linux/desktop_settings_panes.h"
#include "platform_linux/desktop_tray_hosts.h"
#include "platform_linux/json_preferences.h"
#include "platform_linux/lazy_http_client.h"
#include "platform_linux/mecab_tokenizer.h"
#include "platform_linux/portal_appearance.h"
#include "platform_linux/portal_audio_input.h"
#include "platform_linux/screen_capture_program.h"
#include "platform_linux/secret_libsecret_store.h"
#include "platform_linux/tesseract_recognizer.h"
#include "platform_linux/x11_desktop.h"
#include "platform_linux/xdg_login_item.h"
#include "platform_linux/xdg_web_browser.h"

#include "lazy_speech.h"

#include <QCoreApplication>

namespace nivora::linuxdesktop {

// The accessibility bus answers while the rest is being made.
struct LinuxBackend::Parts
{
    LibsecretStore secrets;
    X11Desktop x11;
    AtspiAccessibility accessibility{QString(), x11.windowSystem(),
                                     [this](qint64 process) { return x11.gtkScale(process); }};
    LazyHttpClient http;
    JsonPreferences preferences{JsonPreferences::defaultPath()};
    DesktopSettingsPanes settingsPanes;
    MecabTokenizer japaneseTokenizer;
    LazySpeech speech{japaneseTokenizer};
    PortalAudioInput audioInput{speech.audioInput()};
    PortalAppearance appearance;
    XdgWebBrowser webBrowser;
    XdgLoginItem loginItem{XdgLoginItem::defaultFolder(), QCoreApplication::applicationFilePath()};
    DesktopTrayHosts trayHosts{x11.trayManager()};
    ScreenCaptureProgram screenCapture;
    TesseractRecognizer textRecognizer;
};

LinuxBackend::LinuxBackend()
    : m_parts(std::make_unique<Parts>())
{
}

LinuxBackend::~LinuxBackend() = default;

bool LinuxBackend::isValid() const
{
    return m_parts->x11.isValid();
}

platform::Services LinuxBackend::services()
{
    Parts &parts = *m_parts;
    return {
        .preferences = parts.preferences,
        .secrets = parts.secrets,
        .http = parts.http,
        .keyEventTap = parts.x11.keyEventTap(),
        .hotKey = parts.x11.hotKey(),
        .keySynthesizer = parts.x11.keySynthesizer(),
        .accessibility = parts.accessibility,
        .clipboard = parts.x11.clipboard(),
        .primarySelection = parts.x11.primarySelection(),
        .windowSystem = parts.x11.windowSystem(),
        .settingsPanes = parts.settingsPanes,
        .japaneseTokenizer = parts.japaneseTokenizer,
        .speechSynthesizer = parts.speech.synthesizer(),
        .speechRecognizer = parts.speech.recognizer(),
        .audioInput = parts.audioInput,
        .appearance = parts.appearance,
        .webBrowser = parts.webBrowser,
        .idleMonitor = parts.x11.idleMonitor(),
        .loginItem = parts.loginItem,
        .trayHosts = parts.trayHosts,
        .screenCapture = parts.screenCapture,
        .textRecognizer = parts.textRecognizer,
    };
}

} // namespace nivora::linuxdesktop
