#include "picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

namespace nivora::ocr {

namespace {

// Models were trained on print of some 30 pixels or more; that of screens is
// half as large. A picture too large for that is read as it is.
constexpr float enlargement = 2;
constexpr qint64 maxEnlargedPixels = 12'000'000;
constexpr qint64 maxReadPixels = 16'000'000;

constexpr int margin = 12; // pixels, that letters at the edge are seen whole
constexpr int white = 255;

// Gaps between columns as multiples of those between rows. Measured: 0.2 to 0.5
// where text runs across, 3.7 to 5.8 where it runs down.
constexpr double leastOfDown = 0.5;
constexpr double surelyDown = 2;
// Gaps as parts of the ink between them: 0.1 to 0.2 between characters, 0.4 and more
// between lines.
constexpr double dense = 0.3;
constexpr double leastInColumn = 3; // characters

// Pixels after the enlargement: some four lines of print, and less than any
// distance between two of them.
constexpr int leastHeightToCut = 220;
constexpr int leastGapToCutAt = 3;

qint64 pixelsOf(Pix *pix)
{
    return qint64(pixGetWidth(pix)) * pixGetHeight(pix);
}

// How often each level of grey occurs, less the rarest hundredth at both ends.
struct Levels
{
    int darkest = 0;
    int lightest = white;
    int commonest = white;
};

Levels levelsOf(Pix *grey)
{
    std::array<qint64, 256> counts{};
    const int width = pixGetWidth(grey);
    for (int y = 0; y < pixGetHeight(grey); ++y) {
        const l_uint32 *line = pixGetData(grey) + qint64(y) * pixGetWpl(grey);
        for (int x = 0; x < width; ++x)
            ++counts[GET_DATA_BYTE(line, x)];
    }
    const qint64 rare = pixelsOf(grey) / 500;
    Levels levels;
    for (qint64 seen = 0; levels.darkest < white; ++levels.darkest) {
        if ((seen += counts[levels.darkest]) > rare)
            break;
    }
    for (qint64 seen = 0; levels.lightest > 0; --levels.lightest) {
        if ((seen += counts[levels.lightest]) > rare)
            break;
    }
    levels.commonest = int(std::ranges::max_element(counts) - counts.begin());
    return levels;
}

// Text is the lesser part of a picture: what is commonest is its ground.
PixPtr darkOnLight(PixPtr grey)
{
    const Levels levels = levelsOf(grey.get());
    const int range = levels.lightest - levels.darkest;
    if (range <= 0)
        return grey;
    const bool invert = levels.commonest - levels.darkest < levels.lightest - levels.commonest;
    std::array<l_uint8, 256> map{};
    for (int level = 0; level < 256; ++level) {
        const int drawn = std::clamp((level - levels.darkest) * white / range, 0, white);
        map[level] = l_uint8(invert ? white - drawn : drawn);
    }
    const int width = pixGetWidth(grey.get());
    for (int y = 0; y < pixGetHeight(grey.get()); ++y) {
        l_uint32 *line = pixGetData(grey.get()) + qint64(y) * pixGetWpl(grey.get());
        for (int x = 0; x < width; ++x)
            SET_DATA_BYTE(line, x, map[GET_DATA_BYTE(line, x)]);
    }
    return grey;
}

// A region often takes in the edge of a window or a table's rule, which models
// take for a letter. What runs from one side of the picture to the other is none.
PixPtr withoutRules(PixPtr grey)
{
    constexpr l_uint8 ink = 176;
    const int width = pixGetWidth(grey.get());
    const int height = pixGetHeight(grey.get());
    std::vector<bool> across(height, true);
    std::vector<bool> along(width, true);
    for (int y = 0; y < height; ++y) {
        const l_uint32 *line = pixGetData(grey.get()) + qint64(y) * pixGetWpl(grey.get());
        for (int x = 0; x < width; ++x) {
            if (GET_DATA_BYTE(line, x) > ink) {
                across[y] = false;
                along[x] = false;
            }
        }
    }
    for (int y = 0; y < height; ++y) {
        l_uint32 *line = pixGetData(grey.get()) + qint64(y) * pixGetWpl(grey.get());
        for (int x = 0; x < width; ++x) {
            if (across[y] || along[x])
                SET_DATA_BYTE(line, x, white);
        }
    }
    return grey;
}

PixPtr scaled(PixPtr grey)
{
    const qint64 pixels = pixelsOf(grey.get());
    float factor = 1;
    if (pixels * enlargement * enlargement <= maxEnlargedPixels)
        factor = enlargement;
    else if (pixels > maxReadPixels) {
        factor = std::sqrt(float(maxReadPixels) / float(pixels));
        std::fprintf(stderr, "picture of %lld megapixels read at %d %% of its size\n",
                     static_cast<long long>(pixels / 1'000'000), int(factor * 100));
    }
    return factor == 1 ? std::move(grey) : PixPtr(pixScale(grey.get(), factor, factor));
}

// Where text, or anything else dark, stands.
struct Ink
{
    std::vector<bool> rows;
    std::vector<bool> columns;
};

Ink inkOf(Pix *picture)
{
    constexpr int dark = 128;
    const int width = pixGetWidth(picture);
    const int height = pixGetHeight(picture);
    Ink ink{std::vector<bool>(height), std::vector<bool>(width)};
    for (int y = 0; y < height; ++y) {
        const l_uint32 *line = pixGetData(picture) + qint64(y) * pixGetWpl(picture);
        for (int x = 0; x < width; ++x) {
            if (GET_DATA_BYTE(line, x) < dark) {
                ink.rows[y] = true;
                ink.columns[x] = true;
            }
        }
    }
    return ink;
}

// The mean lengths of inked stretches and of the blanks between them; no blanks are
// 0 long.
struct Rhythm
{
    double inked = 0;
    double blank = 0;
    int extent = 0; // of all of them
};

Rhythm rhythmOf(const std::vector<bool> &inked)
{
    int stretches = 0;
    int ink = 0;
    int blanks = 0;
    int run = 0;
    for (const bool isInked : inked) {
        if (!isInked) {
            ++run;
            continue;
        }
        if (ink == 0 || run > 0) {
            blanks += ink == 0 ? 0 : run;
            ++stretches;
        }
        ++ink;
        run = 0;
    }
    return {double(ink) / std::max(stretches, 1), double(blanks) / std::max(stretches - 1, 1),
            ink + blanks};
}

} // namespace

PixPtr readablePicture(const QByteArray &data)
{
    const auto *bytes = reinterpret_cast<const l_uint8 *>(data.constData());
    int format = 0;
    int width = 0;
    int height = 0;
    if (pixReadHeaderMem(bytes, data.size(), &format, &width, &height, nullptr, nullptr, nullptr) !=
            0 ||
        width <= 0 || height <= 0) {
        std::fputs("the data is no picture\n", stderr);
        return nullptr;
    }
    if (qint64(width) * height > maxMegapixels * 1'000'000) {
        std::fprintf(stderr, "picture of %d x %d pixels is too large to be read\n", width, height);
        return nullptr;
    }
    PixPtr picture(pixReadMem(bytes, data.size()));
    PixPtr grey(picture ? pixConvertTo8(picture.get(), 0) : nullptr);
    picture.reset();
    if (!grey) {
        std::fputs("the picture is damaged\n", stderr);
        return nullptr;
    }
    grey = scaled(withoutRules(darkOnLight(std::move(grey))));
    return PixPtr(pixAddBorder(grey.get(), margin, white));
}

Direction directionOf(Pix *picture)
{
    const Ink ink = inkOf(picture);
    const Rhythm rows = rhythmOf(ink.rows);
    const Rhythm columns = rhythmOf(ink.columns);
    // One line alone has gaps between its characters only.
    if (rows.blank == 0 || columns.blank == 0) {
        return pixGetHeight(picture) > 2 * pixGetWidth(picture) ? Direction::Either
                                                                : Direction::Across;
    }
    // Below a line whose characters stand apart there may be a cursor or a rule.
    const bool isFlat = rows.extent < leastInColumn * columns.inked;
    if (isFlat || columns.blank < leastOfDown * rows.blank)
        return Direction::Across;
    // Tables have wide columns too, but their lines stand apart.
    const bool isDense = rows.blank < dense * rows.inked;
    return isDense && columns.blank > surelyDown * rows.blank ? Direction::Down : Direction::Either;
}

int rowToCutAt(Pix *picture)
{
    const int height = pixGetHeight(picture);
    if (height < leastHeightToCut)
        return 0;
    const std::vector<bool> rows = inkOf(picture).rows;
    int run = 0;
    int widest = leastGapToCutAt;
    int middle = 0;
    for (int y = height / 5; y < height / 2; ++y) {
        run = rows[y] ? 0 : run + 1;
        if (run > widest) {
            widest = run;
            middle = y - run / 2;
        }
    }
    return middle;
}

PixPtr rowsOf(Pix *picture, int top, int bottom)
{
    const std::unique_ptr<Box, void (*)(Box *)> box(
        boxCreate(0, top, pixGetWidth(picture), bottom - top),
        [](Box *each) { boxDestroy(&each); });
    const PixPtr rows(pixClipRectangle(picture, box.get(), nullptr));
    return rows ? PixPtr(pixAddBorder(rows.get(), margin, white)) : nullptr;
}

} // namespace nivora::ocr
