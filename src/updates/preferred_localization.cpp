#include "updates/preferred_localization.h"

#include <unicode/localematcher.h>

#include <vector>

namespace nivora {

namespace {

// Tags that ICU cannot read become the root locale, which matches nothing.
std::vector<icu::Locale> localesOf(const QStringList &tags)
{
    std::vector<icu::Locale> locales;
    for (const QString &tag : tags) {
        UErrorCode status = U_ZERO_ERROR;
        auto locale = icu::Locale::forLanguageTag(tag.toStdString(), status);
        locales.push_back(U_SUCCESS(status) ? std::move(locale) : icu::Locale::getRoot());
    }
    return locales;
}

} // namespace

std::optional<QString> preferredLocalization(const QStringList &available,
                                             const QStringList &userLanguages)
{
    if (userLanguages.isEmpty())
        return std::nullopt;
    const std::vector<icu::Locale> supported = localesOf(available);
    const std::vector<icu::Locale> desired = localesOf(userLanguages);
    UErrorCode status = U_ZERO_ERROR;
    const auto matcher = icu::LocaleMatcher::Builder()
                             .setSupportedLocales(supported.begin(), supported.end())
                             .setNoDefaultLocale()
                             .build(status);
    icu::Locale::RangeIterator each(desired.begin(), desired.end());
    const auto match = matcher.getBestMatchResult(each, status);
    if (U_FAILURE(status) || match.getSupportedIndex() < 0)
        return std::nullopt;
    return available.value(match.getSupportedIndex());
}

} // namespace nivora
