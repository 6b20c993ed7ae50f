#pragma once

#include <vector>

#include "model/model.h"

namespace TQTool {

// The cases without a value (or a category): all less those that are valid.
Count MissingOf(const BinnedAttribute& attribute);

// Whether bins lie between these cut points, one after the other.
bool FitCuts(const std::vector<Bin>& bins, const std::vector<double>& cuts);

// Two numbers of cases together; a sum with a number that is not known is not known.
Count Sum(const Count& a, const Count& b);

// The counts of two bins together.
Bin Sum(const Bin& a, const Bin& b);

// The bins between new cut points: one whose ends are ends of `counted` bins gets the
// sum of their counts, the counts of any other are not known.
std::vector<Bin> MergeBins(const std::vector<Bin>& counted, const std::vector<double>& cuts);

}  // namespace TQTool
