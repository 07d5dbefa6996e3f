#include "session/translation_view_model.h"

#include "core/language_detector.h"
#include "stores/settings_store.h"

#include "platform/clipboard.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto liveTranslationRest = 1s;
constexpr auto copiedStateSpan = 800ms;

} // namespace

TranslationViewModel::TranslationViewModel(TranslationEngine &engine, const SettingsStore &settings,
                                           platform::Clipboard &clipboard)
    : m_engine(engine)
    , m_settings(settings)
    , m_clipboard(clipboard)
{
}

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
    assign(m_mode, PanelMode::Selection, &TranslationViewModel::modeChanged);
    m_manualTarget.reset();
    m_lastFocusContext = context;
    m_programmaticText = text;
    setSourceText(text);
    setContextText({});
    assign(m_hasInsertTarget, hasInsertTarget, &TranslationViewModel::hasInsertTargetChanged);
    translateNow();
}

void TranslationViewModel::prepareManualInput(bool hasInsertTarget,
                                              const std::optional<platform::FocusDiag> &context)
{
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

void TranslationViewModel::setPinned(bool pinned)
{
    assign(m_isPinned, pinned, &TranslationViewModel::isPinnedChanged);
}

} // namespace nivora
