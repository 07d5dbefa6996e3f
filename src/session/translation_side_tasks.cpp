// The part of the session that surrounds a finished translation.
#include "session/translation_view_model.h"

#include "back_translation.h"
#include "reading_line.h"
#include "variant_list.h"
#include "voice_input.h"

#include "desktop/speech_service.h"
#include "stores/settings_store.h"

#include "platform/clipboard.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto copiedStateSpan = 800ms;

} // namespace

QString TranslationViewModel::reading() const
{
    return m_reading->text();
}

QString TranslationViewModel::backTranslation() const
{
    return m_backTranslation->text();
}

QStringList TranslationViewModel::variants() const
{
    return m_variants->texts();
}

bool TranslationViewModel::loadingVariants() const
{
    return m_variants->isLoading();
}

bool TranslationViewModel::sourceIsForeign() const
{
    return m_detectedSource != Language::Auto && m_detectedSource != primaryLanguage();
}

bool TranslationViewModel::showReply() const
{
    return m_mode == PanelMode::Selection && sourceIsForeign() && !m_hasInsertTarget &&
           !m_translatedText.isEmpty();
}

PrimaryAction TranslationViewModel::primaryAction() const
{
    if (m_translatedText.isEmpty())
        return PrimaryAction::None;
    switch (m_mode) {
    case PanelMode::Selection:
        return m_hasInsertTarget ? PrimaryAction::Replace : PrimaryAction::None;
    case PanelMode::Compose:
        return m_hasInsertTarget ? PrimaryAction::Insert : PrimaryAction::Copy;
    case PanelMode::Reply:
        return PrimaryAction::Copy;
    }
    Q_UNREACHABLE();
}

bool TranslationViewModel::canShowVariants() const
{
    return m_effectiveTarget == Language::Japanese && !m_translatedText.isEmpty();
}

void TranslationViewModel::loadVariants()
{
    const QString source = m_sourceText.trimmed();
    if (canShowVariants() && !source.isEmpty())
        m_variants->load(source);
}

void TranslationViewModel::useVariant(const QString &text)
{
    const QString chosen = text; // may be an entry of the list that is emptied here
    m_task.cancel();
    m_variants->clear();
    m_backTranslation->clear();
    setTranslatedText(chosen);
    m_reading->show(chosen);
    if (isTranslating())
        assign(m_phase, Phase{Phase::Kind::Done, {}}, &TranslationViewModel::phaseChanged);
}

void TranslationViewModel::copyResult()
{
    if (m_translatedText.isEmpty())
        return;
    m_clipboard.setText(m_translatedText);
    assign(m_justCopied, true, &TranslationViewModel::justCopiedChanged);
    m_copyReset = platform::delay(copiedStateSpan, [this] {
        assign(m_justCopied, false, &TranslationViewModel::justCopiedChanged);
    });
}

void TranslationViewModel::insert()
{
    if (!m_translatedText.isEmpty() && insertHandler)
        insertHandler(m_translatedText);
}

std::optional<SpeechTarget> TranslationViewModel::speechTarget() const
{
    if (m_effectiveTarget == Language::Japanese && !m_translatedText.isEmpty())
        return SpeechTarget{m_translatedText, u"ja-JP"_s};
    if (m_detectedSource == Language::Japanese && !m_sourceText.isEmpty())
        return SpeechTarget{m_sourceText, u"ja-JP"_s};
    if (m_translatedText.isEmpty())
        return std::nullopt;
    return SpeechTarget{m_translatedText,
                        m_effectiveTarget == Language::English ? u"en-US"_s : u"zh-CN"_s};
}

void TranslationViewModel::speakCurrent()
{
    const auto target = speechTarget();
    const QString text = target ? target->text.trimmed() : QString();
    if (!m_speech || text.isEmpty())
        return;
    // The user chooses a voice for Japanese alone.
    const QString voice =
        target->language == u"ja-JP" ? m_settings.speechVoiceID.value() : QString();
    m_speech->speak(text, target->language, voice, m_settings.speechRate.value());
}

void TranslationViewModel::stopSpeaking()
{
    if (m_speech)
        m_speech->stop();
}

bool TranslationViewModel::isSpeaking() const
{
    return m_speech && m_speech->isSpeaking();
}

bool TranslationViewModel::isSpeechAvailable() const
{
    return m_speech && m_speech->isAvailable();
}

bool TranslationViewModel::isListening() const
{
    return m_voice->isListening();
}

QString TranslationViewModel::voiceError() const
{
    return m_voice->error();
}

bool TranslationViewModel::voiceErrorOpensSettings() const
{
    return m_voice->errorOpensSettings();
}

void TranslationViewModel::toggleVoice()
{
    m_voice->toggle(m_sourceText);
}

void TranslationViewModel::stopListening()
{
    m_voice->abandon();
}

void TranslationViewModel::openVoiceSettings()
{
    m_voice->openSettings();
}

// Not an edit of the user's: what is heard bit by bit neither clears the result
// nor begins a run.
void TranslationViewModel::hear(const QString &text, bool isFinal)
{
    m_programmaticText = text;
    setSourceText(text);
    if (isFinal)
        translateNow();
}

} // namespace nivora
