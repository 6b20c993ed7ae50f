#pragma once

#include <cstddef>

namespace TQBinning {

// Whether this processor has the instructions that SortByVector needs.
bool CanSortByVector();

// Doubles that SortByVector may write to beyond the end of `spare`.
constexpr std::size_t kVectorSortSlack = 8;

// Sorts numbers ascending; there is no NaN among them, and no negative zero.
// `spare` has room for `count` + kVectorSortSlack numbers.  False when the input
// defeats it, so that it would take more than n log n steps: `values` then holds the
// same numbers in some order.
bool SortByVector(double* values, double* spare, std::size_t count);

}  // namespace TQBinning
