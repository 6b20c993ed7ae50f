#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <type_traits>

#include "tqbinning/bindatatuple.h"

namespace TQBinning {

// Orders doubles by <, with NaN after all numbers.
inline bool ComesBefore(double a, double b) { return a < b || (std::isnan(b) && !std::isnan(a)); }

// Sorts tuples ascending by value, NaN last.  Unsupervised tuples of equal value are
// put in the order of their weights: later, shorter attributes leave some of them
// standing behind their own, and what is left must not depend on the order of the
// cases.
template <typename Tuple>
void SortByValue(std::span<Tuple> tuples) {
  std::sort(tuples.begin(), tuples.end(), [](const Tuple& a, const Tuple& b) {
    if (ComesBefore(a.value, b.value)) return true;
    if constexpr (std::is_same_v<Tuple, EFBINDataTuple>) {
      return !ComesBefore(b.value, a.value) && ComesBefore(a.weight, b.weight);
    }
    return false;
  });
}

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

}  // namespace TQBinning
