#pragma once

#include <QByteArray>

#include <allheaders.h>

#include <memory>

namespace nivora::ocr {

struct DestroyPix
{
    void operator()(Pix *pix) const { pixDestroy(&pix); }
};
using PixPtr = std::unique_ptr<Pix, DestroyPix>;

// More than any arrangement of screens has; what is larger is not decoded.
inline constexpr qint64 maxMegapixels = 64;

// The picture as models read it best: grey, dark on light, its contrast drawn
// out, small print enlarged. Null when the data is no picture or too large, which
// costs a line on standard error.
PixPtr readablePicture(const QByteArray &data);

enum class Direction { Across, Either, Down };

// Where its text runs, by the gaps between rows and columns of ink.
Direction directionOf(Pix *picture);

// A row between two lines of text, in the upper half, where the picture can be cut;
// 0 where there is none, or the picture too small for it to be worth it.
int rowToCutAt(Pix *picture);

// The rows from `top` up to `bottom`, with some room around them.
PixPtr rowsOf(Pix *picture, int top, int bottom);

} // namespace nivora::ocr
