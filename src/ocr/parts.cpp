#include "parts.h"

#include "cjk_text.h"

#include <algorithm>
#include <set>

namespace nivora::ocr {

namespace {

// How sure a model is tells whether it fits. Measured: one that does not is at least
// 30 less sure than one that does, at most 50 sure in all and 60 of a line; but of
// Latin text all are sure, and one that fits may doubt a line for one character.
constexpr double fittingDifference = 15;
constexpr double leastOfFitting = 50;
constexpr double leastOfLine = 60;
constexpr double mostDoubted = 0.34; // part of the text

const QByteArray english("eng");
const QByteArray vertical("_vert");

using Models = std::set<QByteArray>;

const Reading *surestOf(const std::vector<Reading> &readings)
{
    const auto found = std::ranges::max_element(readings, {}, &Reading::confidence);
    return found == readings.end() ? nullptr : &*found;
}

// Those for other scripts know Latin letters, too; that for English knows them better,
// and is worth asking where there are lines of them.
Models fittingModels(const std::vector<Reading> &readings)
{
    const Reading *surest = surestOf(readings);
    if (!surest || surest->model == english)
        return {english};
    Models models;
    for (const Reading &each : readings) {
        if (each.confidence() >= surest->confidence() - fittingDifference)
            models.insert(each.model);
    }
    const auto isLatin = [](const Line &line) { return !hasCjk(line.text); };
    if (std::ranges::any_of(surest->lines, isLatin))
        models.insert(english);
    return models;
}

// Whether these lines are of the text that the model fits. One line of another script
// among English ones is to be found, too.
bool fitsAll(const Reading *reading)
{
    if (!reading)
        return false;
    double doubted = 0;
    double all = 0;
    for (const Line &line : reading->lines) {
        all += double(line.text.size());
        doubted += line.confidence < leastOfLine ? double(line.text.size()) : 0;
    }
    return doubted <= (reading->model == english ? 0 : mostDoubted * all);
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

std::vector<Reading> readWhole(Workers &workers, Pix *picture)
{
    return workers.read(picture, [](const QByteArray &) { return true; });
}

// Characters that stand well apart are easy to read row by row, too.
std::vector<Reading> withoutRows(std::vector<Reading> readings)
{
    const auto isAcross = [](const Reading &each) { return !each.model.endsWith(vertical); };
    const auto fits = [&](const Reading &each) {
        return !isAcross(each) && each.confidence() >= leastOfFitting;
    };
    if (std::ranges::any_of(readings, fits))
        std::erase_if(readings, isAcross);
    return readings;
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
    if (!fitsAll(surestOf(rest))) {
        std::ranges::move(
            workers.read(bottom.get(),
                         [&](const QByteArray &each) { return !fitting.contains(each); }),
            std::back_inserter(rest));
    }
    return joined(std::move(first), rest, cut);
}

} // namespace

std::vector<Reading> readingsOf(Workers &workers, Pix *picture, Direction direction)
{
    switch (direction) {
    case Direction::Across:
        return readInParts(workers, picture);
    case Direction::Either:
        return readWhole(workers, picture);
    case Direction::Down:
        return withoutRows(readWhole(workers, picture));
    }
    return {};
}

} // namespace nivora::ocr
