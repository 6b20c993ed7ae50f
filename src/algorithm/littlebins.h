#pragma once

#include <cstddef>
#include <set>
#include <vector>

namespace TQBinning {

// Merges every inner bin that weighs less than `threshold` times its lighter
// neighbour with the neighbour that leaves less entropy, the left one on a tie.
// `cellCounts` holds the bins' class counts one after another, classes + 1 numbers
// each; both arguments are changed in place.
void MergeLittleBins(std::vector<double>& cellCounts, std::set<double>& cuts, std::size_t classes,
                     double threshold);

}  // namespace TQBinning
