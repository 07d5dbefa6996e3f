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

// Whether the gaps between columns are the wider ones, as where East Asian text
// runs from top to bottom.
bool looksVertical(Pix *picture);

} // namespace nivora::ocr
