#pragma once

#include "reading.h"

#include <vector>

namespace nivora::ocr {

// Every job in a process of its own, all at once, so that cores are used and a
// job that crashes or runs out of memory costs its own reading alone. That one is
// missing from the answer; a line on standard error says so, except of models for
// vertical text.
std::vector<Reading> readAll(Pix *picture, const std::vector<Job> &jobs);

} // namespace nivora::ocr
