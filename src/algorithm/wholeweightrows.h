#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "tqbinning/bindatatuple.h"

namespace TQBinning {

// Rows of an attribute, each a stretch of its sorted tuples, with their class weights
// as whole numbers.  Only classes that a row has take room, so that many classes cost
// no more than two.
class WholeWeightRows {
 public:
  using Weights = std::vector<std::uint64_t>;  // per class

  // Long enough for the sums at the ends of stretches to take a sixteenth of a byte per row.
  static constexpr std::size_t kRowsPerClass = 128;

  // A stretch, at whose ends the class weights are known, has so many rows for each class.
  explicit WholeWeightRows(std::size_t rowsPerClass = kRowsPerClass)
      : fRowsPerClass(rowsPerClass) {}

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

  int Count() const { return static_cast<int>(fCount); }
  std::size_t Classes() const { return fClasses; }
  bool IsRightClosed() const { return fRightClosed; }
  std::uint64_t TotalWeight() const { return fTotalWeight; }

  // Whether a cut between a row and the next can be the best: not if both are pure in the
  // same class.
  bool IsBoundary(int row) const { return fIsBoundary[static_cast<std::size_t>(row)] != 0; }

  // The tuple whose value stands for a row that is not empty: a cut there is next to
  // the row's last value when the right border is closed, to its first one if not.
  std::size_t TupleAtCut(int row) const {
    const auto r = static_cast<std::size_t>(row);
    return fRightClosed ? fRowTuples[r] - 1 : r == 0 ? 0 : fRowTuples[r - 1];
  }

  // An entry is a class that a row has, with its weight there.
  std::size_t FirstEntryOf(int row) const {
    return row == 0 ? 0 : fRowEntries[static_cast<std::size_t>(row) - 1];
  }
  std::size_t EndEntryOf(int row) const { return fRowEntries[static_cast<std::size_t>(row)]; }
  unsigned char EntryClass(std::size_t entry) const { return fEntryClasses[entry]; }
  std::uint32_t EntryWeight(std::size_t entry) const { return fEntryWeights[entry]; }

  int RowsInStretch() const { return static_cast<int>(fRowsPerClass * fClasses); }
  // The class weights of all rows before `row`; adds up those of one stretch at most.
  void SumBefore(int row, Weights& weights) const;

 private:
  class Place;
  class Writer;

  bool Start(std::span<const BINDataTuple> tuples, std::size_t rows, std::size_t classes,
             bool rightClosed);
  void Reserve(std::size_t rows, std::size_t entries);
  bool IsCountable(const BINDataTuple& tuple) const;
  void FindBoundaries();
  void SumStretches();

  std::size_t fRowsPerClass;
  std::size_t fCount = 0;     // of rows
  std::size_t fMostRows = 0;  // that may be written
  // Kept from one attribute to the next, and not touched before it is written, since mostly
  // there are fewer rows than values.
  std::unique_ptr<unsigned char[]> fEntryClasses;
  std::unique_ptr<std::uint32_t[]> fEntryWeights;
  std::unique_ptr<std::uint32_t[]> fRowEntries;  // where each row's entries end
  std::unique_ptr<std::uint32_t[]> fRowTuples;   // where each row's tuples end
  std::unique_ptr<unsigned char[]> fIsBoundary;
  std::size_t fEntryRoom = 0;
  std::size_t fRowRoom = 0;
  std::vector<std::uint64_t> fSums;  // the class weights before each stretch
  std::size_t fClasses = 0;
  bool fRightClosed = true;
  std::uint64_t fTotalWeight = 0;
};

}  // namespace TQBinning
