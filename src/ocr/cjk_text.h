#pragma once

#include <QString>

namespace nivora::ocr {

// Characters of the scripts that are written without blanks, with their
// punctuation and full-width forms.
bool isCjk(char32_t character);

// Whether there is one of them in it.
bool hasCjk(const QString &text);

// A line as it is written in Chinese and Japanese. Models put blanks between
// characters, and take full-width punctuation for the narrow one, which looks the
// same but for the room around it. Both are mended next to such characters alone:
// Latin words and numbers keep theirs.
QString writtenAsCjk(const QString &line);

} // namespace nivora::ocr
