#include "fuzz.h"

#include "core/csv.h"
#include "stores/glossary_exchange.h"

using namespace nivora;

// What is written is read back, whatever was read before.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto text = exchangeText(fuzz::Input(data, size).rest());
    if (!text)
        return 0;
    const auto records = parseCsv(*text);
    QString written;
    for (const QStringList &record : records)
        written += csvRecord(record);
    fuzz::check(parseCsv(written) == records, "records survive being written");

    const auto terms = glossaryFromText(*text);
    const auto again = glossaryFromText(glossaryToCsv(terms));
    fuzz::check(std::ranges::equal(terms, again,
                                   [](const GlossaryTerm &one, const GlossaryTerm &other) {
                                       return one.zh == other.zh && one.ja == other.ja;
                                   }),
                "terms survive being written");
    return 0;
}
