#pragma once

#include <cmath>
#include <span>

#include "data/sortmemory.h"
#include "tqbinning/bindatatuple.h"

namespace TQBinning {

// Orders doubles by <, with NaN after all numbers.
inline bool ComesBefore(double a, double b) { return a < b || (std::isnan(b) && !std::isnan(a)); }

// Sort tuples of any kind ascending by value, NaN last; CaseSorter is faster where it
// can be used.  Supervised tuples of equal value end in
// no defined order.  Unsupervised ones are put in the order of their weights: later,
// shorter attributes leave some of them standing behind their own, and what is left
// must not depend on the order of the cases.  A negative zero may become a zero.
void SortByValue(std::span<BINDataTuple> tuples, SortMemory& memory);
void SortByValue(std::span<EFBINDataTuple> tuples, SortMemory& memory);

// The number of distinct values of sorted tuples.  Every NaN counts, since it
// equals no other.
template <typename Tuple>
unsigned int CountDistinct(std::span<const Tuple> tuples) {
  unsigned int count = tuples.empty() ? 0U : 1U;
  for (std::size_t i = 1; i < tuples.size(); ++i) {
    if (tuples[i].value != tuples[i - 1].value) ++count;
  }
  return count;
}

inline unsigned int CountDistinct(std::span<const double> values) {
  unsigned int count = values.empty() ? 0U : 1U;
  for (std::size_t i = 1; i < values.size(); ++i) count += values[i] != values[i - 1] ? 1U : 0U;
  return count;
}

}  // namespace TQBinning
