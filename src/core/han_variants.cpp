#include "core/han_variants.h"

#include "han_variants_table.h"

namespace nivora {

HanVariant hanVariant(char16_t c)
{
    if (c < hanVariantsFirst || c > hanVariantsLast)
        return HanVariant::Shared;
    const unsigned index = c - hanVariantsFirst;
    // Four characters a byte, two bits each.
    return static_cast<HanVariant>((hanVariantsTable[index / 4] >> (index % 4 * 2)) & 3);
}

} // namespace nivora
