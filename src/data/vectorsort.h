#pragma once

#include <cstddef>

namespace TQBinning {

// Whether this processor has the instructions that SortByVector needs.
bool CanSortByVector();

// Sorts numbers ascending; there is no NaN among them, and no negative zero.
// `spare` has room for `count` numbers.
void SortByVector(double* values, double* spare, std::size_t count);

// The same with a limit on partitions within partitions; beyond it numbers are sorted by
// a heap.  The one above chooses a limit that only data made to defeat it reach.
void SortByVector(double* values, double* spare, std::size_t count, int mostLevels);

}  // namespace TQBinning
