#include "cjk_text.h"

#include <QList>

#include <algorithm>

namespace nivora::ocr {

namespace {

// Of what stands in running text; others have no full-width form in use.
char32_t fullWidth(char32_t narrow)
{
    switch (narrow) {
    case U',':
    case U'?':
    case U'!':
    case U':':
    case U';':
        return narrow + 0xFEE0; // the distance to the block of full-width forms
    default:
        return 0;
    }
}

// Marks that fill the room of a character and need no blank beside them.
bool isFullWidthMark(char32_t character)
{
    return (character >= 0x3000 && character <= 0x303F) ||
           (character >= 0xFF00 && character <= 0xFFEF);
}

} // namespace

bool isCjk(char32_t character)
{
    switch (QChar::script(character)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
        return true;
    default: // marks that several scripts share
        return isFullWidthMark(character) || character == 0x30FB || character == 0x30FC;
    }
}

bool hasCjk(const QString &text)
{
    return std::ranges::any_of(text.toUcs4(), isCjk);
}

QString writtenAsCjk(const QString &line)
{
    QString result;
    result.reserve(line.size());
    char32_t before = 0; // the last that was no blank
    qsizetype blanks = 0;
    for (char32_t character : line.toUcs4()) {
        if (character == U' ') {
            ++blanks;
            continue;
        }
        const char32_t wide = isCjk(before) ? fullWidth(character) : 0;
        if (wide != 0)
            character = wide;
        const bool isInside = isCjk(before) && isCjk(character);
        if (!isInside && !isFullWidthMark(before) && !isFullWidthMark(character))
            result += QString(blanks, u' ');
        result += QStringView(QChar::fromUcs4(character));
        before = character;
        blanks = 0;
    }
    return result;
}

} // namespace nivora::ocr
