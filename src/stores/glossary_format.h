#pragma once

#include "core/translation_options.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace nivora {

// The file format of the glossary: a JSON array of objects with the text
// members "id", "ja" and "zh", written with one member on each line.
QByteArray encodeGlossary(const std::vector<GlossaryTerm> &terms);

// Absent unless every element has all three members and its id is a UUID.
// Further members are of no account.
std::optional<std::vector<GlossaryTerm>> decodeGlossary(const QByteArray &json);

} // namespace nivora
