#include "fuzz.h"

#include "glossary_format.h"

using namespace nivora;

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto terms = decodeGlossary(fuzz::Input(data, size).rest());
    if (!terms)
        return 0;
    fuzz::check(decodeGlossary(encodeGlossary(*terms)) == terms, "what was read is written so");
    const TranslationOptions options{*terms, {}, {}};
    static_cast<void>(renderTerms(options.matchedTerms(u"text 文字"_qs, Language::Japanese)));
    return 0;
}
