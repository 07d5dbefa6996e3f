#pragma once

namespace nivora {

// Which of the two Chinese scripts a character belongs to.
enum class HanVariant { Shared, TraditionalOnly, SimplifiedOnly };

// A look-up in a table made at build time from ICU's Traditional-Simplified
// transliteration; Shared for everything outside U+3400 to U+9FFF.
HanVariant hanVariant(char16_t c);

} // namespace nivora
