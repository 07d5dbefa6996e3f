#include "fuzz.h"

#include "core/translation_engine.h"

#include <QSet>

using namespace nivora;

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const int most = input.number(8);
    const QStringList kept =
        TranslationEngine::parseVariants(QString::fromUtf8(input.rest()), most);
    fuzz::check(kept.size() <= std::max(1, most), "no more than were asked for");
    fuzz::check(QSet<QString>(kept.begin(), kept.end()).size() == kept.size(), "no repeats");
    for (const QString &phrasing : kept)
        fuzz::check(!phrasing.isEmpty(), "no empty phrasing");
    return 0;
}
