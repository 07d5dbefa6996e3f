#include "session/translation_view_model.h"

#include "core/language_detector.h"
#include "core/translation_engine.h"
#include "stores/settings_store.h"

#include "platform/characters.h"
#include "platform/clipboard.h"
#include "platform/log.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto liveTranslationRest = 1s;
constexpr auto copiedStateSpan = 800ms;

QString styleFor(Language target, const QString &raw)
{
    if (target != Language::Japanese)
        return {};
    if (raw == u"polite")
        return u"礼貌、丁寧語"_s;
    if (raw == u"business")
        return u"商务敬语、ビジネス文体"_s;
    return {};
}

} // namespace

TranslationViewModel::TranslationViewModel(TranslationEngine &engine, const SettingsStore &settings,
                                           platform::Clipboard &clipboard)
    : m_engine(engine)
    , m_settings(settings)
    , m_clipboard(clipboard)
{
}

template<typename Value>
void TranslationViewModel::assign(Value &field, Value value,
                                  void (TranslationViewModel::*changed)())
{
    if (field == value)
        return;
    field = std::move(value);
    Q_EMIT(this->*changed)();
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

void TranslationViewModel::cancelRun()
{
    m_task.cancel();
}

void TranslationViewModel::clearResult()
{
    setTranslatedText({});
    assign(m_lastTokens, {}, &TranslationViewModel::lastTokensChanged);
    m_lastTid.clear();
}

void TranslationViewModel::translateNow()
{
    cancelRun();
    const QString source = m_sourceText.trimmed();
    if (source.isEmpty()) {
        setTranslatedText({});
        assign(m_phase, Phase{}, &TranslationViewModel::phaseChanged);
        return;
    }
    const Language target = applyDirection(source);
    const Run run{source, m_detectedSource, target};
    clearResult();
    assign(m_fromHistory, false, &TranslationViewModel::fromHistoryChanged);
    const TranslationOptions wanted = options(target);
    if (!reuseHistory(run, wanted))
        startRun(run, wanted);
}

TranslationOptions TranslationViewModel::options(Language target) const
{
    TranslationOptions options;
    options.background = m_contextText.trimmed();
    if (glossaryProvider)
        options.glossary = glossaryProvider();
    options.style = styleFor(target, m_settings.japaneseStyleRaw.value());
    return options;
}

bool TranslationViewModel::reuseHistory(const Run &run, const TranslationOptions &options)
{
    if (!options.background.isEmpty() || !historyLookup ||
        !options.matchedTerms(run.source, run.target).empty())
        return false;
    const auto cached = historyLookup(run.source, run.target);
    if (!cached || cached->isEmpty())
        return false;
    setTranslatedText(*cached);
    assign(m_fromHistory, true, &TranslationViewModel::fromHistoryChanged);
    assign(m_phase, Phase{Phase::Kind::Done, {}}, &TranslationViewModel::phaseChanged);
    qCDebug(log::translate).noquote()
        << u"命中历史复用: %1→%2"_s.arg(rawValue(run.detected), rawValue(run.target));
    afterTranslation(run, /*recordHistory=*/false);
    return true;
}

void TranslationViewModel::startRun(const Run &run, const TranslationOptions &options)
{
    assign(m_phase, Phase{Phase::Kind::Loading, {}}, &TranslationViewModel::phaseChanged);
    qCDebug(log::translate).noquote() << u"开始: %1→%2, 源字符=%3, 术语=%4 风格=%5 背景=%6"_s.arg(
        rawValue(run.detected), rawValue(run.target),
        QString::number(platform::characterCount(run.source)),
        QString::number(options.matchedTerms(run.source, run.target).size()),
        options.style.isEmpty() ? u"无"_s : options.style,
        options.background.isEmpty() ? u"无"_s : u"有"_s);
    m_task = m_engine.translate(
        run.source, run.target, options, m_settings.config(),
        {
            .onPiece = [this](const QString &piece) { onPiece(piece); },
            .onUsage = [this](const TokenUsage &usage) { onUsage(usage); },
            .onTranslationId = [this](const QString &id) { m_lastTid = id; },
            .onFinished = [this, run](const auto &error) { onFinished(run, error); },
        });
}

void TranslationViewModel::onPiece(const QString &piece)
{
    if (m_phase.kind != Phase::Kind::Streaming) {
        assign(m_phase, Phase{Phase::Kind::Streaming, {}}, &TranslationViewModel::phaseChanged);
        qCDebug(log::translate).noquote() << u"首字节到达"_s;
    }
    m_translatedText += piece;
    Q_EMIT translatedTextAppended(piece);
}

void TranslationViewModel::onUsage(const TokenUsage &usage)
{
    if (usageRecorder)
        usageRecorder(usage);
    assign(m_lastTokens,
           std::optional(m_lastTokens.value_or(0) + usage.promptTokens + usage.completionTokens),
           &TranslationViewModel::lastTokensChanged);
}

void TranslationViewModel::onFinished(const Run &run, const std::optional<TranslationError> &error)
{
    if (error) {
        const QString message = error->errorDescription();
        assign(m_phase, Phase::error(message), &TranslationViewModel::phaseChanged);
        qCCritical(log::translate).noquote() << u"错误: %1"_s.arg(message);
        return;
    }
    assign(m_phase, Phase{Phase::Kind::Done, {}}, &TranslationViewModel::phaseChanged);
    qCDebug(log::translate).noquote()
        << u"完成: 译文字符=%1"_s.arg(platform::characterCount(m_translatedText));
    afterTranslation(run, /*recordHistory=*/true);
}

void TranslationViewModel::afterTranslation(const Run &run, bool recordHistory)
{
    if (recordHistory && historyRecorder)
        historyRecorder(run.source, m_translatedText, run.detected, run.target);
    if (m_settings.autoCopyOnFinish.value())
        copyResult();
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
