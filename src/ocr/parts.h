#pragma once

#include "workers.h"

namespace nivora::ocr {

// What every model makes of the whole picture.
std::vector<Reading> readWhole(Workers &workers, Pix *picture);

// The same for less work where there are many lines: the first ones tell which
// models fit, and only these read the rest. Models that were not asked for it are
// missing from the answer. Where the rest turns out to be something else, all of
// them are asked after all.
std::vector<Reading> readInParts(Workers &workers, Pix *picture);

} // namespace nivora::ocr
