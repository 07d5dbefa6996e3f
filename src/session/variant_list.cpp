#include "variant_list.h"

#include "core/translation_engine.h"
#include "stores/settings_store.h"

namespace nivora {

namespace {

constexpr int variantCount = 3;

} // namespace

VariantList::VariantList(TranslationEngine &engine, const SettingsStore &settings)
    : m_engine(engine)
    , m_settings(settings)
{
}

void VariantList::load(const QString &source)
{
    setLoading(true);
    setTexts({});
    m_task = m_engine.variants(source, Language::Japanese, variantCount, m_settings.config(),
                               [this](const QStringList &variants, const auto &) {
                                   setTexts(variants);
                                   setLoading(false);
                               });
}

void VariantList::clear()
{
    m_task.cancel();
    setTexts({});
    setLoading(false);
}

void VariantList::setTexts(const QStringList &texts)
{
    if (m_texts == texts)
        return;
    m_texts = texts;
    Q_EMIT textsChanged();
}

void VariantList::setLoading(bool isLoading)
{
    if (std::exchange(m_isLoading, isLoading) != isLoading)
        Q_EMIT isLoadingChanged();
}

} // namespace nivora
