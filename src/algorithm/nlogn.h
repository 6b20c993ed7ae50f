#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace TQBinning {

// n log2 n as whole numbers: scaled by a power of two and rounded, so that sums of
// them are exact, in whatever order they are added and taken back.
class NLogN {
 public:
  // For n up to `largest` (at most 2^53); keeps an existing table that reaches so far.
  // Of more than `mostEntries` numbers no table is made: they are computed when asked.
  void Prepare(std::uint64_t largest, std::size_t mostEntries);

  std::int64_t operator()(std::uint64_t n) const {
    return n < fTable.size() ? fTable[n] : Compute(n);
  }

  // The table, when it holds the numbers up to n; else null.
  const std::int64_t* TableUpTo(std::uint64_t n) const {
    return n < fTable.size() ? fTable.data() : nullptr;
  }

  // How far apart two sums over the parts of a split of total n may come to lie
  // although the split entropies, computed by formula, are equal; see docs/numerics.md.
  std::int64_t ToleranceFor(std::uint64_t n, std::size_t classes) const;

 private:
  std::int64_t Compute(std::uint64_t n) const;

  double fScale = 0.0;  // a power of two
  std::uint64_t fLargest = 0;
  std::vector<std::int64_t> fTable;
};

}  // namespace TQBinning
