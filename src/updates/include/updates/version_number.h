#pragma once

#include <QString>

#include <compare>

namespace nivora {

// Whether one version is older than, the same as, or newer than another: numbers
// count as numbers ("1.10" is newer than "1.9", "1.0" the same as "1"), what
// follows them marks a version before that one ("2.0-rc.1" is older than "2.0"),
// a leading "v" and what follows a "+" do not count.
std::weak_ordering compareVersions(const QString &one, const QString &other);

// Whether there is a number in it to compare, and nothing but some 64 characters that
// can be shown.
bool isVersionNumber(const QString &text);

} // namespace nivora
