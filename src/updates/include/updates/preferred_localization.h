#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace nivora {

// Which of the languages on offer fits somebody best who reads `userLanguages`,
// the most wanted first; as it is written in `available`. Both are BCP 47.
// Script and kinship of languages count as in CLDR's matching, so that zh-TW finds
// zh-Hant and not zh-Hans. Absent when nothing comes near.
std::optional<QString> preferredLocalization(const QStringList &available,
                                             const QStringList &userLanguages);

} // namespace nivora
