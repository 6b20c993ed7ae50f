#pragma once

#include <string>
#include <vector>

#include "model/model.h"

namespace TQTool {

// The table of an attribute's bins, as rows of printable cells: a heading, a row per bin,
// the total, and the missing values where there are any.  The heading is the longest row.
std::vector<std::vector<std::string>> BinGrid(const BinnedAttribute& attribute, const Model& model);

// What the bins tell about the target on the whole; nothing without cuts or target.
std::string GainOf(const BinnedAttribute& attribute);

}  // namespace TQTool
