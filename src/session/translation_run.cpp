// The part of the session that runs one translation, from the text to its end.
#include "session/translation_view_model.h"

#include "back_translation.h"
#include "reading_line.h"
#include "variant_list.h"

#include "core/translation_engine.h"
#include "stores/settings_store.h"

#include "platform/characters.h"
#include "platform/log.h"

using namespace Qt::Literals::StringLiterals;

namespace nivora {

namespace {

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

void TranslationViewModel::cancelRun()
{
    m_task.cancel();
    m_reading->stop();
    m_backTranslation->stop();
    m_variants->clear();
}

void TranslationViewModel::clearResult()
{
    setTranslatedText({});
    m_reading->clear();
    m_backTranslation->clear();
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
    if (target == Language::Japanese || run.detected == Language::Japanese)
        m_reading->prepare();
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
    // The reading belongs to the Japanese side, whichever that is.
    if (run.target == Language::Japanese) {
        m_reading->show(m_translatedText);
        if (m_settings.showBackTranslation.value() && m_hasInsertTarget)
            m_backTranslation->start(m_translatedText,
                                     [this](const TokenUsage &usage) { onUsage(usage); });
    } else if (run.detected == Language::Japanese) {
        m_reading->show(run.source);
    }
    if (m_settings.autoCopyOnFinish.value())
        copyResult();
    if (m_settings.autoSpeak.value())
        speakCurrent();
}

} // namespace nivora
