#include "choice.h"

#include "cjk_text.h"

#include "core/han_variants.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace nivora::ocr {

namespace {

// How much less sure the model for simplified Chinese is of traditional text, as a
// mean of logarithms. Measured with 100 pictures: this divides all but one.
constexpr double traditionalDoubt = 0.3;

// Measured: models that fit are surer than 75 of screen text; one for English is at
// most 50 sure of what it makes of Japanese and Chinese. Where the models that fit
// are missing, nothing is better than that.
constexpr double leastConfidence = 50;

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

const Symbol *symbolAt(const Reading &reading, const QRect &place)
{
    for (const Line &line : reading.lines) {
        for (const Symbol &symbol : line.symbols) {
            if (samePlace(place, symbol.box))
                return &symbol;
        }
    }
    return nullptr;
}

class Mean
{
public:
    void add(double value)
    {
        m_sum += value;
        ++m_count;
    }
    double value() const { return m_count == 0 ? 0 : m_sum / m_count; }

private:
    double m_sum = 0;
    int m_count = 0;
};

// Both models know both scripts' shapes, and each writes them in its own script, so
// that either may be the surer of a line. They are compared character by character,
// and those count twice that one wrote simplified and the other traditional: there
// they disagree about what the picture shows.
bool isTraditional(const Reading &simplified, const Reading &traditional)
{
    Mean everywhere;
    Mean whereScriptsDiffer;
    for (const Line &line : simplified.lines) {
        for (const Symbol &symbol : line.symbols) {
            const Symbol *other = symbolAt(traditional, symbol.box);
            if (!other)
                continue;
            const double difference = doubt(symbol) - doubt(*other);
            everywhere.add(difference);
            if (belongsTo(symbol, HanVariant::SimplifiedOnly) &&
                belongsTo(*other, HanVariant::TraditionalOnly))
                whereScriptsDiffer.add(difference);
        }
    }
    return everywhere.value() + whereScriptsDiffer.value() > traditionalDoubt;
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
    if (surest == readings.end() || surest->confidence() < leastConfidence)
        return {};
    const Reading *chosen = &*surest;
    const Reading *simplified = ofModel(readings, "chi_sim");
    const Reading *traditional = ofModel(readings, "chi_tra");
    if (simplified && traditional && (chosen == simplified || chosen == traditional))
        chosen = isTraditional(*simplified, *traditional) ? traditional : simplified;

    QStringList lines;
    for (const Line &line : chosen->lines)
        lines.append(bestLine(line, ofModel(readings, "eng")));
    return lines.join(u'\n');
}

} // namespace nivora::ocr
