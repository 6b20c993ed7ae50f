#pragma once

#include <cstddef>

namespace TQBinning {

// Whether this processor has the instructions that the functions below need.
bool CanSortByVector();

// Sorts numbers ascending; there is no NaN among them, and no negative zero.
// `spare` has room for `count` numbers.
void SortByVector(double* values, double* spare, std::size_t count);

// The same with a limit on partitions within partitions; beyond it numbers are sorted by
// a heap.  The one above chooses a limit that only data made to defeat it reach.
void SortByVector(double* values, double* spare, std::size_t count, int mostLevels);

// A division of all numbers into 2^levels ranges, numbered ascending.
struct NumberRanges {
  static constexpr int kMostLevels = 5;
  int levels = 0;
  // On each level its splitters, ascending: a number goes to the left of the larger ones
  // and to the right of the others.
  double splitters[kMostLevels][16] = {};
};

// Tells the range of each number; there is no NaN among them.
void FindRanges(const NumberRanges& ranges, const double* values, std::size_t count,
                unsigned char* rangeOf);

}  // namespace TQBinning
