#include "back_translation.h"

#include "core/language_detector.h"
#include "core/translation_engine.h"
#include "stores/settings_store.h"

using namespace std::chrono_literals;

namespace nivora {

namespace {

constexpr auto restBeforeRequest = 400ms;

} // namespace

BackTranslation::BackTranslation(TranslationEngine &engine, const SettingsStore &settings)
    : m_engine(engine)
    , m_settings(settings)
{
}

void BackTranslation::start(const QString &japanese,
                            std::function<void(const TokenUsage &)> onUsage)
{
    clear();
    m_task = platform::delay(restBeforeRequest, [this, japanese, onUsage = std::move(onUsage)] {
        request(japanese, onUsage);
    });
}

void BackTranslation::request(const QString &japanese,
                              const std::function<void(const TokenUsage &)> &onUsage)
{
    m_task = m_engine.translate(japanese, Language::Chinese, {}, m_settings.config(),
                                {
                                    .onPiece = [this](const QString &piece) { append(piece); },
                                    .onUsage = onUsage,
                                    .onTranslationId = [](const QString &) {},
                                    .onFinished = [](const auto &) {},
                                });
}

void BackTranslation::append(const QString &piece)
{
    // The model repeats the Japanese instead of translating it.
    if (LanguageDetector::containsKana(piece))
        return clear();
    m_text += piece;
    Q_EMIT appended(piece);
}

void BackTranslation::stop()
{
    m_task.cancel();
}

void BackTranslation::clear()
{
    stop();
    if (m_text.isEmpty())
        return;
    m_text.clear();
    Q_EMIT replaced();
}

} // namespace nivora
