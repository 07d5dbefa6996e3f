#include "settings_general_tab.h"

#include "panel_button.h"
#include "settings_binding.h"
#include "settings_section.h"
#include "symbol_label.h"
#include "toggle_switch.h"

#include "desktop/login_item_manager.h"
#include "desktop/speech_service.h"
#include "stores/settings_store.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

constexpr int notePixels = 12; // logical pixels
const auto voiceLanguage = u"ja-JP"_s;
const auto voiceSample = u"こんにちは、テストです。"_s;

} // namespace

SettingsGeneralTab::SettingsGeneralTab(const SettingsWindowController::Parts &parts,
                                       QWidget *parent)
    : SettingsForm(parent)
    , m_parts(parts)
{
    addAppearance();
    auto *keys = addSection(tr("快捷键"));
    auto *threshold =
        new SettingsSlider(parts.settings.doubleTapThresholdMs,
                           {.least = 150, .most = 600, .step = 10}, tr("%1 ms"), keys);
    keys->addRow(tr("双击 Shift 间隔"), threshold, threshold->slider());
    addBehaviour();
    addSpeech();
}

void SettingsGeneralTab::addAppearance()
{
    SettingsStore &settings = m_parts.settings;
    auto *section = addSection(tr("外观"));
    auto *language = makePicker(settings.appLanguageRaw,
                                {{tr("跟随系统"), u"system"_s},
                                 {tr("中文"), u"zh-Hans"_s},
                                 {tr("繁体中文"), u"zh-Hant"_s},
                                 {tr("日本語"), u"ja"_s},
                                 {tr("English"), u"en"_s}},
                                u"system"_s, section);
    section->addRow(tr("App 语言"), language);

    auto *content = new QWidget(section);
    auto *note = new NoteLabel(notePixels, content);
    note->setText(tr("更改语言后需重启生效"));
    note->setWordWrap(true);
    auto *relaunch = new PanelButton(PanelButton::Look::Prominent, content);
    relaunch->setText(tr("立即重启"));
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(note, 1);
    line->addWidget(relaunch);
    QWidget *restart = section->addBlock(content);
    restart->hide();
    connect(&settings.appLanguageRaw, &SettingNotifier::changed, restart, &QWidget::show);
    connect(relaunch, &PanelButton::clicked, this, [this] { m_parts.relaunch(); });

    section->addRow(tr("主题"), makePicker(settings.themeModeRaw,
                                           {{tr("跟随系统"), u"system"_s},
                                            {tr("浅色"), u"light"_s},
                                            {tr("深色"), u"dark"_s}},
                                           u"system"_s, section));
}

void SettingsGeneralTab::addBehaviour()
{
    SettingsStore &settings = m_parts.settings;
    auto *section = addSection(tr("行为"));
    section->addRow(tr("失去焦点时关闭面板"), makeToggle(settings.closeOnResignFocus, section));
    section->addRow(tr("翻译完成后自动复制"), makeToggle(settings.autoCopyOnFinish, section));
    section->addRow(tr("保存翻译历史（仅本地）"), makeToggle(settings.saveHistory, section));
    m_launchAtLogin = new ToggleSwitch(section);
    section->addRow(tr("开机自动启动"), m_launchAtLogin);
    connect(m_launchAtLogin, &ToggleSwitch::toggled, this, &SettingsGeneralTab::setLaunchAtLogin);
}

void SettingsGeneralTab::setLaunchAtLogin(bool enabled)
{
    if (!m_parts.loginItem.set(enabled))
        renderLaunchAtLogin();
}

void SettingsGeneralTab::renderLaunchAtLogin()
{
    const QSignalBlocker programmatic(m_launchAtLogin);
    m_launchAtLogin->setChecked(m_parts.loginItem.isEnabled());
}

void SettingsGeneralTab::addSpeech()
{
    SettingsStore &settings = m_parts.settings;
    auto *section = addSection(tr("朗读"));
    section->addRow(tr("翻译完成后自动朗读"), makeToggle(settings.autoSpeak, section));

    auto *content = new QWidget(section);
    auto *rate = new SettingsSlider(
        settings.speechRate,
        {.least = 0.3, .most = 0.7, .step = 0.02, .unit = 0.001, .stops = false}, {}, content);
    auto *test = new PanelButton(PanelButton::Look::Plain, content);
    test->setSymbol(u"play.circle"_s);
    test->setHint(tr("试听"));
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(rate);
    line->addWidget(test);
    section->addRow(tr("语速"), content, rate->slider());
    connect(test, &PanelButton::clicked, this, [this, &settings] {
        m_parts.speech.speak(voiceSample, voiceLanguage, settings.speechVoiceID.value(),
                             settings.speechRate.value());
    });

    m_voice = makePicker(section);
    section->addRow(tr("日语语音"), m_voice);
    section->addCaption(tr("更好的音质可在「系统设置 → 辅助功能 → 朗读内容」下载增强语音。"));
    connect(&m_parts.speech, &SpeechService::voicesChanged, this,
            &SettingsGeneralTab::renderVoices);
    connect(&settings.speechVoiceID, &SettingNotifier::changed, this,
            &SettingsGeneralTab::renderVoices);
    connect(m_voice, &QComboBox::currentIndexChanged, this,
            [this, &settings] { settings.speechVoiceID.set(m_voice->currentData().toString()); });
    renderVoices();
}

void SettingsGeneralTab::renderVoices()
{
    {
        const QSignalBlocker programmatic(m_voice);
        m_voice->clear();
        m_voice->addItem(tr("自动（最佳）"), QString());
        for (const platform::SpeechVoice &voice : m_parts.speech.voices(voiceLanguage))
            m_voice->addItem(voice.name, voice.identifier);
    }
    showChoice(*m_voice, m_parts.settings.speechVoiceID.value(), QString());
}

void SettingsGeneralTab::showEvent(QShowEvent *event)
{
    renderLaunchAtLogin();
    m_parts.speech.loadVoices();
    SettingsForm::showEvent(event);
}

} // namespace nivora
