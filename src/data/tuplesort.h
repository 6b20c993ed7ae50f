#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <span>

#include "tqbinning/bindatatuple.h"

namespace TQBinning {

// Memory that a sort needs beside the tuples, at most one more tuple vector.  Kept
// from one sort to the next, because fresh memory costs as much as a pass.
struct SortScratch {
  std::size_t capacity = 0;
  std::unique_ptr<std::uint64_t[]> keys[2];
  std::unique_ptr<std::uint32_t[]> payloads[2];

  void Reserve(std::size_t count);
};

// Orders doubles by <, with NaN after all numbers.
inline bool ComesBefore(double a, double b) { return a < b || (std::isnan(b) && !std::isnan(a)); }

// Sort tuples ascending by value, NaN last.  Supervised tuples of equal value end in
// no defined order.  Unsupervised ones are put in the order of their weights: later,
// shorter attributes leave some of them standing behind their own, and what is left
// must not depend on the order of the cases.  A negative zero may become a zero.
void SortByValue(std::span<BINDataTuple> tuples, SortScratch& scratch);
void SortByValue(std::span<EFBINDataTuple> tuples, SortScratch& scratch);

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
