#pragma once

namespace nivora::platform {

class Accessibility;
class Appearance;
class AudioInput;
class Clipboard;
class GlobalHotKey;
class HttpClient;
class IdleMonitor;
class JapaneseTokenizer;
class KeyEventTap;
class KeySynthesizer;
class LoginItem;
class Preferences;
class PrimarySelectionReader;
class ScreenCapture;
class SecretStore;
class SettingsPanes;
class SpeechRecognizer;
class SpeechSynthesizer;
class TextRecognizer;
class TrayHosts;
class WebBrowser;
class WindowSystem;

// One backend's implementation of every interface. Borrowed: whoever makes the
// backend keeps it alive longer than everything that uses it.
struct Services
{
    Preferences &preferences;
    SecretStore &secrets;
    HttpClient &http;
    KeyEventTap &keyEventTap;
    GlobalHotKey &hotKey;
    KeySynthesizer &keySynthesizer;
    Accessibility &accessibility;
    Clipboard &clipboard;
    PrimarySelectionReader &primarySelection;
    WindowSystem &windowSystem;
    SettingsPanes &settingsPanes;
    JapaneseTokenizer &japaneseTokenizer;
    SpeechSynthesizer &speechSynthesizer;
    SpeechRecognizer &speechRecognizer;
    AudioInput &audioInput;
    Appearance &appearance;
    WebBrowser &webBrowser;
    IdleMonitor &idleMonitor;
    LoginItem &loginItem;
    TrayHosts &trayHosts;
    ScreenCapture &screenCapture;
    TextRecognizer &textRecognizer;
};

} // namespace nivora::platform
