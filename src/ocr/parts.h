#pragma once

#include "workers.h"

namespace nivora::ocr {

// What the models make of the picture. Where it has many lines that run across, the
// first ones tell which models fit, and only these read the rest; those that were
// not asked for it are missing from the answer. Where the rest turns out to be
// something else, all of them are asked after all.
std::vector<Reading> readingsOf(Workers &workers, Pix *picture, Direction direction);

} // namespace nivora::ocr
