// Prints a C++ header that tells for every ideograph whether only the
// traditional or only the simplified Chinese script has it, by ICU's
// Traditional-Simplified transliteration. Run by the build.

#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr char16_t first = 0x3400;
constexpr char16_t last = 0x9FFF;

// The characters that the transliteration changes. Each stands on a line of its
// own, since some rules look at their neighbours.
bool changed(const char *id, std::vector<bool> &result)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Transliterator> rules(
        icu::Transliterator::createInstance(id, UTRANS_FORWARD, status));
    if (U_FAILURE(status)) {
        std::fprintf(stderr, "%s: %s\n", id, u_errorName(status));
        return false;
    }
    for (char16_t c = first; c <= last; ++c) {
        icu::UnicodeString text(c);
        rules->transliterate(text);
        result.push_back(text != icu::UnicodeString(c));
    }
    return true;
}

} // namespace

int main()
{
    std::vector<bool> toSimplified;
    std::vector<bool> toTraditional;
    if (!changed("Traditional-Simplified", toSimplified) ||
        !changed("Simplified-Traditional", toTraditional))
        return 1;

    std::printf("#pragma once\n\nnamespace nivora {\n\n"
                "inline constexpr char16_t hanVariantsFirst = 0x%X;\n"
                "inline constexpr char16_t hanVariantsLast = 0x%X;\n\n"
                "// 0 shared, 1 traditional only, 2 simplified only\n"
                "inline constexpr unsigned char hanVariantsTable[] = {",
                unsigned(first), unsigned(last));
    for (std::size_t i = 0; i < toSimplified.size(); i += 4) {
        unsigned packed = 0;
        for (std::size_t k = 0; k < 4 && i + k < toSimplified.size(); ++k) {
            // What both directions change belongs to neither script alone.
            const unsigned variant = toSimplified[i + k] == toTraditional[i + k] ? 0
                                     : toSimplified[i + k]                       ? 1
                                                                                 : 2;
            packed |= variant << (k * 2);
        }
        std::printf("%s%u,", i % 96 == 0 ? "\n    " : " ", packed);
    }
    std::printf("\n};\n\n} // namespace nivora\n");
    return 0;
}
