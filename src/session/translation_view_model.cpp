#include "session/translation_view_model.h"

#include "back_translation.h"
#include "reading_line.h"
#include "variant_list.h"
#include "voice_input.h"

#include "core/language_detector.h"
#include "desktop/speech_service.h"
#include "stores/settings_store.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto liveTranslationRest = 1s;

} // namespace

TranslationViewModel::TranslationViewModel(const Parts &parts)
    : m_engine(parts.engine)
    , m_settings(parts.settings)
    , m_clipboard(parts.clipboard)
    , m_speech(parts.speech)
    , m_reading(std::make_unique<ReadingLine>(parts.readings, parts.settings))
    , m_backTranslation(std::make_unique<BackTranslation>(parts.engine, parts.settings))
    , m_variants(std::make_unique<VariantList>(parts.engine, parts.settings))
    , m_voice(std::make_unique<VoiceInput>(parts.speechInput, parts.settingsPanes,
                                           [this] { return dictationLocale(primaryLanguage()); }))
{
    using Self = TranslationViewModel;
    connect(m_reading.get(), &ReadingLine::textChanged, this, &Self::readingChanged);
    connect(m_backTranslation.get(), &BackTranslation::replaced, this,
            &Self::backTranslationReplaced);
    connect(m_backTranslation.get(), &BackTranslation::appended, this,
            &Self::backTranslationAppended);
    connect(m_variants.get(), &VariantList::textsChanged, this, &Self::variantsChanged);
    connect(m_variants.get(), &VariantList::isLoadingChanged, this, &Self::loadingVariantsChanged);
    connect(m_voice.get(), &VoiceInput::isListeningChanged, this, &Self::isListeningChanged);
    connect(m_voice.get(), &VoiceInput::errorChanged, this, &Self::voiceErrorChanged);
    connect(m_voice.get(), &VoiceInput::heard, this, &Self::hear);
    if (m_speech) {
        connect(m_speech, &SpeechService::isSpeakingChanged, this, &Self::isSpeakingChanged);
        connect(m_speech, &SpeechService::availabilityChanged, this,
                &Self::isSpeechAvailableChanged);
    }
}

TranslationViewModel::~TranslationViewModel() = default;

void TranslationViewModel::setDirection(Language detected, Language target)
{
    if (m_detectedSource == detected && m_effectiveTarget == target)
        return;
    m_detectedSource = detected;
    m_effectiveTarget = target;
    Q_EMIT directionChanged();
}

void TranslationViewModel::setTranslatedText(const QString &text)
{
    assign(m_translatedText, text, &TranslationViewModel::translatedTextReplaced);
}

bool TranslationViewModel::isTranslating() const
{
    return m_phase.kind == Phase::Kind::Loading || m_phase.kind == Phase::Kind::Streaming;
}

Language TranslationViewModel::primaryLanguage() const
{
    return languageFromRawValue(m_settings.defaultTargetLanguageRaw.value())
        .value_or(Language::Chinese);
}

Language TranslationViewModel::secondaryLanguage() const
{
    return languageFromRawValue(m_settings.secondaryLanguageRaw.value())
        .value_or(Language::Japanese);
}

Language TranslationViewModel::applyDirection(const QString &trimmedSource)
{
    const Language detected = LanguageDetector::detect(trimmedSource);
    const Language target = m_manualTarget.value_or(
        LanguageDetector::target(detected, primaryLanguage(), secondaryLanguage()));
    setDirection(detected, target);
    return target;
}

void TranslationViewModel::setSource(const QString &text, bool hasInsertTarget,
                                     const std::optional<platform::FocusDiag> &context)
{
    leaveResult();
    assign(m_mode, PanelMode::Selection, &TranslationViewModel::modeChanged);
    m_manualTarget.reset();
    m_lastFocusContext = context;
    m_programmaticText = text;
    setSourceText(text);
    setContextText({});
    assign(m_hasInsertTarget, hasInsertTarget, &TranslationViewModel::hasInsertTargetChanged);
    translateNow();
}

// What belongs to the text before a trigger, and to nothing after it.
void TranslationViewModel::leaveResult()
{
    stopSpeaking();
    m_voice->abandon();
    m_voice->clearError();
    closeFeedback();
}

void TranslationViewModel::prepareManualInput(bool hasInsertTarget,
                                              const std::optional<platform::FocusDiag> &context)
{
    leaveResult();
    assign(m_mode, PanelMode::Compose, &TranslationViewModel::modeChanged);
    cancelRun();
    m_manualTarget.reset();
    m_programmaticText.reset();
    setSourceText({});
    setContextText({});
    clearResult();
    assign(m_fromHistory, false, &TranslationViewModel::fromHistoryChanged);
    assign(m_phase, Phase{}, &TranslationViewModel::phaseChanged);
    setDirection(Language::Auto, secondaryLanguage());
    m_lastFocusContext = context;
    assign(m_hasInsertTarget, hasInsertTarget, &TranslationViewModel::hasInsertTargetChanged);
}

void TranslationViewModel::prepareReply(const QString &background, Language replyTo)
{
    // The argument may refer to a field that is about to be emptied.
    const QString context = background.trimmed();
    prepareManualInput(false, std::nullopt);
    assign(m_mode, PanelMode::Reply, &TranslationViewModel::modeChanged);
    setContextText(context);
    m_manualTarget = replyTo;
    setDirection(m_detectedSource, replyTo);
}

void TranslationViewModel::selectTarget(Language target)
{
    m_manualTarget = target;
    setDirection(m_detectedSource, target);
    const QString source = m_sourceText.trimmed();
    if (source.isEmpty())
        return;
    setDirection(LanguageDetector::detect(source), target);
    if (!m_translatedText.isEmpty() || isTranslating() || m_settings.liveTranslate.value())
        translateNow();
}

void TranslationViewModel::editSource(const QString &text)
{
    setSourceText(text);
    sourceEdited();
}

void TranslationViewModel::editContext(const QString &text)
{
    // What the program wrote into the other box is of no account here.
    m_programmaticText.reset();
    setContextText(text);
    sourceEdited();
}

void TranslationViewModel::setSourceText(const QString &text)
{
    assign(m_sourceText, text, &TranslationViewModel::sourceTextChanged);
}

void TranslationViewModel::setContextText(const QString &text)
{
    assign(m_contextText, text, &TranslationViewModel::contextTextChanged);
}

void TranslationViewModel::sourceEdited()
{
    if (std::exchange(m_programmaticText, std::nullopt) == m_sourceText)
        return;
    m_debounce.cancel();
    if (!m_settings.liveTranslate.value()) {
        invalidateTranslation();
        return;
    }
    m_debounce = platform::delay(liveTranslationRest, [this] { translateNow(); });
}

void TranslationViewModel::invalidateTranslation()
{
    cancelRun();
    clearResult();
    assign(m_phase, Phase{}, &TranslationViewModel::phaseChanged);
    const QString source = m_sourceText.trimmed();
    if (!source.isEmpty())
        applyDirection(source);
}

void TranslationViewModel::setPinned(bool pinned)
{
    assign(m_isPinned, pinned, &TranslationViewModel::isPinnedChanged);
}

} // namespace nivora
