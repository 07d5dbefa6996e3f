#pragma once

#include "core/translation_options.h"

#include <QString>

#include <optional>
#include <vector>

namespace nivora {

// The glossary for other programs: CSV with a line of headings, "zh" and "ja".
QString glossaryToCsv(const std::vector<GlossaryTerm> &terms);

// The terms of such a text, each with an id of its own. Takes pairs separated by
// tabs, too, as spreadsheets copy them, with headings or without; what stands
// behind the second field of a line is left out, and so are lines without a word.
std::vector<GlossaryTerm> glossaryFromText(const QString &text);

// The text of a file of this kind: UTF-8, or UTF-16 that says so at its beginning.
// Absent for whatever is neither.
std::optional<QString> exchangeText(const QByteArray &bytes);

} // namespace nivora
