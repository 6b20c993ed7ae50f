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
  // A row per distinct value, or a row per bin between `borders` (as for
  // BINDataSet::CreateBinTable).  False, and the rows are not to be used, when a
  // weight is not a positive whole number, when the weights add up beyond 2^53, or
  // when the borders do not cover the values, from the first bin to the last.
  bool FillByValue(std::span<const BINDataTuple> tuples, std::size_t classes, bool rightClosed);
  bool FillByBorders(std::span<const BINDataTuple> tuples, std::size_t classes, bool rightClosed,
                     std::span<const double> borders);

  // Splits as long as the MDL test accepts: the rows whose values are the cuts.
  std::set<int> Split(NLogN& nLogN);

  // The class counts of rows first..last: the total, then the weight per class.
  void CountRows(int first, int last, std::span<double> counts) const;

  int Count() const { return fRows; }
  std::size_t Classes() const { return fClasses; }
  std::uint64_t TotalWeight() const { return fTotalWeight; }
  // The last of the tuples of a row that is not empty.
  std::size_t LastTupleOf(int row) const { return fRowTuples[static_cast<std::size_t>(row)] - 1; }

 private:
  using Weights = std::vector<std::uint64_t>;  // per class

  struct Interval {
    int first;
    int last;
    Weights weights;
  };
  struct Candidate {
    int position;
    std::int64_t sum;
  };

  bool Start(std::span<const BINDataTuple> tuples, std::size_t classes, bool rightClosed);
  bool AddTuple(const BINDataTuple& tuple);
  void EndRow(std::size_t tuples);
  std::size_t FirstEntryOf(int row) const {
    return row == 0 ? 0 : fRowEntries[static_cast<std::size_t>(row) - 1];
  }
  std::size_t EndEntryOf(int row) const { return fRowEntries[static_cast<std::size_t>(row)]; }
  bool IsBoundary(int row) const;
  void FindCandidates(const Interval& interval, const NLogN& nLogN);
  int ChooseCandidate(const Interval& interval, std::vector<double>& left,
                      std::vector<double>& right) const;

  // An entry is a class that a row has, with its weight there.
  std::vector<unsigned char> fEntryClasses;
  std::vector<std::uint32_t> fEntryWeights;
  std::vector<std::uint32_t> fRowEntries;    // where each row's entries end
  std::vector<std::uint32_t> fRowTuples;     // where each row's tuples end
  std::vector<std::uint32_t> fEntryOfClass;  // while a row is filled: where its class is
  std::vector<Candidate> fCandidates;
  std::size_t fClasses = 0;
  int fRows = 0;
  bool fRightClosed = true;
  std::uint64_t fTotalWeight = 0;
};

}  // namespace TQBinning
