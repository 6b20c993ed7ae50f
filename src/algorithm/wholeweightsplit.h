#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "algorithm/nlogn.h"
#include "algorithm/wholeweightrows.h"

namespace TQBinning {

// The fast way of splitting for whole-number weights: the result is that of the
// entropy kernel's formulas, to the last bit; see docs/numerics.md.
class WholeWeightSplit {
 public:
  // What splitting gave: the rows that the cuts are at, and each bin's class counts
  // (the total, then the weight per class), one bin after the other.
  struct Bins {
    std::set<int> cutRows;
    std::vector<double> cellCounts;
  };

  // Both are borrowed; `nLogN` is prepared for the rows' total weight.
  WholeWeightSplit(const WholeWeightRows& rows, const NLogN& nLogN) : fRows(rows), fNLogN(nLogN) {}

  // Splits as long as the MDL test accepts.
  Bins Split() const;

 private:
  using Weights = WholeWeightRows::Weights;

  struct Interval {
    int first;
    int last;
    Weights weights;
  };
  struct Candidate {
    int position;
    std::int64_t sum;
  };
  template <typename Lookup>
  class Search;

  int LastLeftRow(int position) const { return fRows.IsRightClosed() ? position : position - 1; }

  Weights SumRows(int first, int last) const;
  std::vector<Candidate> FindCandidates(const Interval& interval) const;
  int ChooseCandidate(const Interval& interval, const std::vector<Candidate>& candidates,
                      Weights& left) const;

  const WholeWeightRows& fRows;
  const NLogN& fNLogN;
};

}  // namespace TQBinning
