#pragma once

#include "reading.h"

#include <vector>

namespace nivora::ocr {

// The text of the model that fits the picture, its lines separated by line feeds;
// empty where none read anything, or the models that fit are missing. Lines of Latin
// text alone are taken from the model for English where it is surer of them.
QString bestText(const std::vector<Reading> &readings);

} // namespace nivora::ocr
