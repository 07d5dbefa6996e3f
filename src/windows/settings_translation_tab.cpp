#include "settings_translation_tab.h"

#include "editor_binding.h"
#include "glossary_settings_section.h"
#include "panel_button.h"
#include "settings_backend_section.h"
#include "settings_binding.h"
#include "settings_section.h"
#include "text_editor.h"
#include "toggle_switch.h"

#include "core/language.h"
#include "stores/settings_store.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

// Logical pixels.
constexpr int templateHeight = 150;
constexpr int templatePixels = 12;

} // namespace

SettingsTranslationTab::SettingsTranslationTab(const SettingsWindowController::Parts &parts,
                                               QWidget *parent)
    : SettingsForm(parent)
    , m_settings(parts.settings)
{
    addSection(new SettingsBackendSection(parts.settings, parts.connectionTest, this));
    addTemplate();
    addLanguages();
    addJapanese();
    addSection(new GlossarySettingsSection(parts.glossary, this));
}

void SettingsTranslationTab::addTemplate()
{
    auto *section = addSection(tr("自建后端提示模板"));
    auto *editor = makeTextEditor(templatePixels, EditorFrame::Field, section);
    editor->setFixedHeight(templateHeight);
    SettingsSection::setName(*editor, tr("自建后端提示模板"));
    section->addBlock(editor);
    section->addCaption(tr("可用变量：{{text}} {{target}} {{source}} {{style}} {{background}} "
                           "{{glossary}}。仅 BYO（自建后端）时生效。"));
    auto *content = new QWidget(section);
    auto *restore = new PanelButton(PanelButton::Look::Secondary, content);
    restore->setText(tr("恢复默认模板"));
    auto *line = new QHBoxLayout(content);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(restore);
    line->addStretch();
    section->addBlock(content);

    auto *text = new EditorBinding(
        *editor, [this](const QString &edited) { m_settings.byoPromptTemplate.set(edited); });
    const auto renderText = [this, text] { text->show(m_settings.byoPromptTemplate.value()); };
    const auto renderPresence = [this, section] {
        section->setVisible(m_settings.useCustomBackend.value());
    };
    connect(&m_settings.byoPromptTemplate, &SettingNotifier::changed, editor, renderText);
    connect(&m_settings.useCustomBackend, &SettingNotifier::changed, section, renderPresence);
    connect(restore, &PanelButton::clicked, this,
            [this] { m_settings.byoPromptTemplate.set(SettingsStore::defaultPromptTemplate()); });
    renderText();
    renderPresence();
}

void SettingsTranslationTab::addLanguages()
{
    QList<Choice> languages;
    for (const Language language : selectableLanguages)
        languages.append({displayName(language), rawValue(language)});
    auto *section = addSection(tr("语言"));
    section->addRow(tr("我的语言"), makePicker(m_settings.defaultTargetLanguageRaw, languages,
                                               rawValue(Language::Chinese), section));
    section->addRow(tr("我用母语书写时，译成"),
                    makePicker(m_settings.secondaryLanguageRaw, languages,
                               rawValue(Language::Japanese), section));
    section->addCaption(tr("外语自动译成「我的语言」；当源文本身已是我的语言时，译成上面选的语言。"
                           "每次翻译都可在面板里临时改方向。"));
}

void SettingsTranslationTab::addJapanese()
{
    auto *section = addSection(tr("日语增强"));
    section->addRow(tr("读音显示"), makePicker(m_settings.readingStyleRaw,
                                               {{tr("关闭"), u"off"_s},
                                                {tr("罗马音"), u"romaji"_s},
                                                {tr("平假名"), u"hiragana"_s}},
                                               u"hiragana"_s, section));
    section->addRow(tr("书写日语风格"), makePicker(m_settings.japaneseStyleRaw,
                                                   {{tr("默认"), u"normal"_s},
                                                    {tr("礼貌"), u"polite"_s},
                                                    {tr("商务敬语"), u"business"_s}},
                                                   u"normal"_s, section));
    section->addRow(tr("写日语时显示中文回译（校验原意）"),
                    makeToggle(m_settings.showBackTranslation, section));
    section->addCaption(tr("仅在涉及日语时生效。"));
}

} // namespace nivora
