#include "parts.h"

#include <algorithm>
#include <set>

namespace nivora::ocr {

namespace {

// How sure a model is tells whether it fits. Measured: with those that do not, it is
// at least 30 less than with those that do, and of a line below 60; but of Latin
// text all models are sure.
constexpr double fittingDifference = 15;
constexpr double leastOfLine = 60;

const QByteArray english("eng");

using Models = std::set<QByteArray>;

const Reading *surestOf(const std::vector<Reading> &readings)
{
    const auto found = std::ranges::max_element(readings, {}, &Reading::confidence);
    return found == readings.end() ? nullptr : &*found;
}

// That for English also reads the Latin lines of other scripts' text.
Models fittingModels(const std::vector<Reading> &readings)
{
    const Reading *surest = surestOf(readings);
    Models models{english};
    if (!surest || surest->model == english)
        return models;
    for (const Reading &each : readings) {
        if (each.confidence() >= surest->confidence() - fittingDifference)
            models.insert(each.model);
    }
    return models;
}

bool isSureOfEveryLine(const Reading *reading)
{
    return reading && std::ranges::all_of(reading->lines, [](const Line &line) {
               return line.confidence >= leastOfLine;
           });
}

// The models that read both, with the rows of the second part where they stood.
std::vector<Reading> joined(std::vector<Reading> first, const std::vector<Reading> &rest, int top)
{
    std::vector<Reading> whole;
    for (Reading &reading : first) {
        const auto more = std::ranges::find(rest, reading.model, &Reading::model);
        if (more == rest.end())
            continue;
        for (Line line : more->lines) {
            line.box.translate(0, top);
            for (Symbol &symbol : line.symbols)
                symbol.box.translate(0, top);
            reading.lines.append(line);
        }
        whole.push_back(std::move(reading));
    }
    return whole;
}

} // namespace

std::vector<Reading> readWhole(Workers &workers, Pix *picture)
{
    return workers.read(picture, [](const QByteArray &) { return true; });
}

std::vector<Reading> readInParts(Workers &workers, Pix *picture)
{
    const int cut = rowToCutAt(picture);
    const PixPtr top = cut > 0 ? rowsOf(picture, 0, cut) : nullptr;
    const PixPtr bottom = cut > 0 ? rowsOf(picture, cut, pixGetHeight(picture)) : nullptr;
    if (!top || !bottom)
        return readWhole(workers, picture);

    std::vector<Reading> first = readWhole(workers, top.get());
    const Models fitting = fittingModels(first);
    std::vector<Reading> rest =
        workers.read(bottom.get(), [&](const QByteArray &each) { return fitting.contains(each); });
    if (!isSureOfEveryLine(surestOf(rest))) {
        std::ranges::move(
            workers.read(bottom.get(),
                         [&](const QByteArray &each) { return !fitting.contains(each); }),
            std::back_inserter(rest));
    }
    return joined(std::move(first), rest, cut);
}

} // namespace nivora::ocr
