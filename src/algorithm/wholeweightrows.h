#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <vector>

#include "algorithm/nlogn.h"
#include "tqbinning/bindatatuple.h"

// The fast way of splitting for whole-number weights: the result is that of the
// entropy kernel's formulas, to the last bit.
namespace TQBinning {

// Rows of an attribute, each a stretch of its sorted tuples, with their class weights
// as whole numbers.  Only classes that a row has take room, so that many classes cost
// no more than two.
class WholeWeightRows {
 public:
  // What splitting gave: the rows that the cuts are at, and each bin's class counts
  // (the total, then the weight per class), one bin after the other.
  struct Bins {
    std::set<int> cutRows;
    std::vector<double> cellCounts;
  };

  // A row per distinct value, of which there are `distinct`; of values in a sequence
  // that are pure in one class only the outer ones can be cut, so that the others share
  // a row.  Or a row per bin between `borders` (as for BINDataSet::CreateBinTable).
  // False, and the rows are not to be used, when a weight is not a positive whole
  // number, when the weights add up beyond 2^53, or when the borders do not cover the
  // values, from the first bin to the last.
  bool FillByValue(std::span<const BINDataTuple> tuples, std::size_t distinct, std::size_t classes,
                   bool rightClosed);
  bool FillByBorders(std::span<const BINDataTuple> tuples, std::size_t classes, bool rightClosed,
                     std::span<const double> borders);

  // Splits as long as the MDL test accepts.
  Bins Split(const NLogN& nLogN) const;

  int Count() const { return static_cast<int>(fRowTuples.size()); }
  std::uint64_t TotalWeight() const { return fTotalWeight; }
  // The tuple whose value stands for a row that is not empty: a cut there is next to
  // the row's last value when the right border is closed, to its first one if not.
  std::size_t TupleAtCut(int row) const {
    const auto r = static_cast<std::size_t>(row);
    return fRightClosed ? fRowTuples[r] - 1 : r == 0 ? 0 : fRowTuples[r - 1];
  }

 private:
  using Weights = std::vector<std::uint64_t>;  // per class

  class Run;
  struct Interval {
    int first;
    int last;
    Weights weights;
  };
  struct Candidate {
    int position;
    std::int64_t sum;
  };

  bool Start(std::span<const BINDataTuple> tuples, std::size_t rows, std::size_t classes,
             bool rightClosed);
  bool IsCountable(const BINDataTuple& tuple) const;
  bool AddTuple(const BINDataTuple& tuple);
  bool AddRow(std::size_t tuples);
  bool AddEntry(unsigned char target, std::uint64_t weight);
  void EndRow(std::size_t tuples, bool isBoundary);
  void FindBoundaries();
  std::size_t FirstEntryOf(int row) const {
    return row == 0 ? 0 : fRowEntries[static_cast<std::size_t>(row) - 1];
  }
  std::size_t EndEntryOf(int row) const { return fRowEntries[static_cast<std::size_t>(row)]; }
  int LastLeftRow(int position) const { return fRightClosed ? position : position - 1; }

  Weights SumRows(int first, int last) const;
  Weights LeftWeights(const Interval& interval, int lastLeft) const;
  template <typename Lookup>
  std::vector<Candidate> FindCandidates(const Interval& interval, Lookup nLogN,
                                        std::int64_t tolerance) const;
  std::vector<Candidate> FindCandidates(const Interval& interval, const NLogN& nLogN) const;
  int ChooseCandidate(const Interval& interval, const std::vector<Candidate>& candidates,
                      Weights& left) const;

  // An entry is a class that a row has, with its weight there.
  std::vector<unsigned char> fEntryClasses;
  std::vector<std::uint32_t> fEntryWeights;
  std::vector<std::uint32_t> fRowEntries;    // where each row's entries end
  std::vector<std::uint32_t> fRowTuples;     // where each row's tuples end
  std::vector<unsigned char> fIsBoundary;    // whether a cut between a row and the next can be
                                             // the best
  std::vector<std::uint64_t> fWeightInRow;   // while a row is filled, per class
  std::vector<unsigned char> fClassesInRow;  // those that it has
  std::size_t fClasses = 0;
  bool fRightClosed = true;
  std::uint64_t fTotalWeight = 0;
};

}  // namespace TQBinning
