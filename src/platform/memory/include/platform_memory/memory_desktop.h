#pragma once

#include "platform/services.h"
#include "platform_memory/memory_accessibility.h"
#include "platform_memory/memory_appearance.h"
#include "platform_memory/memory_audio_input.h"
#include "platform_memory/memory_clipboard.h"
#include "platform_memory/memory_http_client.h"
#include "platform_memory/memory_idle_monitor.h"
#include "platform_memory/memory_japanese_tokenizer.h"
#include "platform_memory/memory_keys.h"
#include "platform_memory/memory_login_item.h"
#include "platform_memory/memory_preferences.h"
#include "platform_memory/memory_primary_selection.h"
#include "platform_memory/memory_screen_capture.h"
#include "platform_memory/memory_secret_store.h"
#include "platform_memory/memory_settings_panes.h"
#include "platform_memory/memory_speech_recognizer.h"
#include "platform_memory/memory_speech_synthesizer.h"
#include "platform_memory/memory_tray_hosts.h"
#include "platform_memory/memory_web_browser.h"
#include "platform_memory/memory_window_system.h"

namespace nivora::memory {

// A desktop for tests: everything that the program asks of a platform, with
// nothing behind it. Time still passes for real.
struct MemoryDesktop
{
    MemoryPreferences preferences;
    MemorySecretStore secrets;
    MemoryHttpClient http;
    MemoryKeyEventTap keyEventTap;
    MemoryHotKey hotKey;
    MemoryKeySynthesizer keySynthesizer;
    MemoryAccessibility accessibility;
    MemoryClipboard clipboard;
    MemoryPrimarySelectionReader primarySelection;
    MemoryWindowSystem windowSystem;
    MemorySettingsPanes settingsPanes;
    MemoryJapaneseTokenizer japaneseTokenizer;
    MemorySpeechSynthesizer speechSynthesizer;
    MemorySpeechRecognizer speechRecognizer;
    MemoryAudioInput audioInput;
    MemoryAppearance appearance;
    MemoryWebBrowser webBrowser;
    MemoryIdleMonitor idleMonitor;
    MemoryLoginItem loginItem;
    MemoryTrayHosts trayHosts;
    MemoryScreenCapture screenCapture;
    MemoryTextRecognizer textRecognizer;

    // Borrows from this object.
    platform::Services services()
    {
        return {preferences,       secrets,          http,
                keyEventTap,       hotKey,           keySynthesizer,
                accessibility,     clipboard,        primarySelection,
                windowSystem,      settingsPanes,    japaneseTokenizer,
                speechSynthesizer, speechRecognizer, audioInput,
                appearance,        webBrowser,       idleMonitor,
                loginItem,         trayHosts,        screenCapture,
                textRecognizer};
    }
};

} // namespace nivora::memory
