#include "choice.h"

#include "cjk_text.h"

#include "core/han_variants.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace nivora::ocr {

namespace {

// How much less sure of its own characters the model for simplified Chinese is
// of traditional text, as a mean of logarithms. Measured: at most 0.09 where the
// picture shows simplified characters, at least 0.15 where it does not.
constexpr double traditionalDoubt = 0.11;

const Reading *ofModel(const std::vector<Reading> &readings, const char *model)
{
    const auto found = std::ranges::find(readings, QByteArrayView(model), &Reading::model);
    return found == readings.end() ? nullptr : &*found;
}

// Whether they cover the same place, and not just touch.
bool samePlace(const QRect &a, const QRect &b)
{
    const QRect common = a & b;
    return 2 * common.width() > a.width() && 2 * common.height() > a.height();
}

bool belongsTo(const Symbol &symbol, HanVariant script)
{
    return symbol.text.size() == 1 && hanVariant(symbol.text.front().unicode()) == script;
}

double doubt(const Symbol &symbol)
{
    return std::log(100.5 - symbol.confidence); // which stays above 0 at 100
}

const Symbol *traditionalAt(const Reading &reading, const QRect &place)
{
    for (const Line &line : reading.lines) {
        for (const Symbol &symbol : line.symbols) {
            if (samePlace(place, symbol.box) && belongsTo(symbol, HanVariant::TraditionalOnly))
                return &symbol;
        }
    }
    return nullptr;
}

// Both models know both scripts' shapes, and each writes them in its own script,
// often surer than the other of the rest of the text. Only where one wrote a
// simplified character and the other a traditional one do they disagree about
// what the picture shows.
const Reading &chosenChinese(const Reading &simplified, const Reading &traditional,
                             const Reading &surer)
{
    double sum = 0;
    int pairs = 0;
    for (const Line &line : simplified.lines) {
        for (const Symbol &symbol : line.symbols) {
            if (!belongsTo(symbol, HanVariant::SimplifiedOnly))
                continue;
            if (const Symbol *other = traditionalAt(traditional, symbol.box)) {
                sum += doubt(symbol) - doubt(*other);
                ++pairs;
            }
        }
    }
    if (pairs == 0)
        return surer;
    return sum / pairs < traditionalDoubt ? simplified : traditional;
}

bool hasCjk(const QString &text)
{
    return std::ranges::any_of(text.toUcs4(), isCjk);
}

QString bestLine(const Line &line, const Reading *english)
{
    if (!english || hasCjk(line.text))
        return line.text;
    const auto found = std::ranges::find_if(english->lines, [&](const Line &each) {
        return samePlace(line.box, each.box) && each.confidence > line.confidence;
    });
    return found == english->lines.end() ? line.text : found->text;
}

} // namespace

QString bestText(const std::vector<Reading> &readings)
{
    const auto surest = std::ranges::max_element(readings, {}, &Reading::confidence);
    if (surest == readings.end())
        return {};
    const Reading *chosen = &*surest;
    const Reading *simplified = ofModel(readings, "chi_sim");
    const Reading *traditional = ofModel(readings, "chi_tra");
    if (simplified && traditional && (chosen == simplified || chosen == traditional))
        chosen = &chosenChinese(*simplified, *traditional, *chosen);

    QStringList lines;
    for (const Line &line : chosen->lines)
        lines.append(bestLine(line, ofModel(readings, "eng")));
    return lines.join(u'\n');
}

} // namespace nivora::ocr
