#include "algorithm/wholeweightrows.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace TQBinning {

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr std::uint64_t kLargestExactSum = std::uint64_t{1} << 53;
constexpr std::uint64_t kLargestEntry = std::numeric_limits<std::uint32_t>::max();

bool IsInside(double value, double border, bool rightClosed) {
  return rightClosed ? value <= border : value < border;
}

// Of a weight that can be counted.  The signed conversion is a single instruction.
std::uint64_t Whole(double weight) {
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(weight));
}

// Tuples come from beyond the caches, and faster when they are asked for in time: a whole
// run takes 6 % less.
void FetchAhead(std::span<const BINDataTuple> tuples, std::size_t i) {
  constexpr std::size_t kTuples = 48;
  __builtin_prefetch(&tuples[std::min(i + kTuples, tuples.size() - 1)]);
}

}  // namespace

bool WholeWeightRows::Start(std::span<const BINDataTuple> tuples, std::size_t rows,
                            std::size_t classes, bool rightClosed) {
  // A NaN stands last; a value that no border covers fails here as well.
  if (tuples.empty() || !IsInside(tuples.back().value, kHighest, rightClosed)) return false;
  if (!rightClosed && tuples.front().value <= kLowest) return false;  // stands for the first row
  if (tuples.size() >= kLargestEntry || classes == 0) return false;
  fClasses = classes;
  fRightClosed = rightClosed;
  fCount = 0;
  fMostRows = rows;
  Reserve(rows, std::min(tuples.size(), rows * classes));
  return true;
}

void WholeWeightRows::Reserve(std::size_t rows, std::size_t entries) {
  if (entries > fEntryRoom) {
    fEntryClasses = std::make_unique_for_overwrite<unsigned char[]>(entries);
    fEntryWeights = std::make_unique_for_overwrite<std::uint32_t[]>(entries);
    fEntryRoom = entries;
  }
  if (rows > fRowRoom) {
    fRowEntries = std::make_unique_for_overwrite<std::uint32_t[]>(rows);
    fRowTuples = std::make_unique_for_overwrite<std::uint32_t[]>(rows);
    fIsBoundary = std::make_unique_for_overwrite<unsigned char[]>(rows);
    fRowRoom = rows;
  }
}

bool WholeWeightRows::IsCountable(const BINDataTuple& tuple) const {
  return tuple.weight >= 1.0 && tuple.weight <= static_cast<double>(kLargestEntry) &&
         static_cast<double>(static_cast<std::int64_t>(tuple.weight)) == tuple.weight &&
         tuple.target < fClasses;
}

// Where rows are being written, and the value that has been added last.
//
// Values in a sequence that are pure in one class are a run.  Of the positions inside only
// one is ever looked at, that after the first value (closed on the right) or before the
// last one (open): this value is a row of its own, and all others share one.  So a row
// starts where a run does, and also after its first value or with its last one.  Where runs
// end no processor can foretell, hence this is done without a branch on it: a value is held
// back until the next one tells whether it was its run's last.
class WholeWeightRows::Place {
 public:
  explicit Place(WholeWeightRows& rows)
      : fEntryClasses(rows.fEntryClasses.get()),
        fEntryWeights(rows.fEntryWeights.get()),
        fRowEntries(rows.fRowEntries.get()),
        fRowTuples(rows.fRowTuples.get()),
        fMostRows(rows.fMostRows),
        fRightClosed(rows.fRightClosed) {}

  // Whether one more value finds room.
  bool HasRoom() const { return fRows + (fHolds ? 1 : 0) < fMostRows; }
  std::size_t Rows() const { return fRows; }
  std::uint64_t TotalWeight() const { return fTotal; }
  // False when a weight has become too large to be counted.
  bool IsCountable() const { return fIsCountable && fTotal <= kLargestExactSum; }

  // A value of cases that are all of one class; its tuples end before `end`.
  void AddPure(unsigned char target, std::uint64_t weight, std::size_t end) {
    const bool isFirst = !fHolds || target != fTarget;
    if (fHolds) WriteHeld(isFirst);
    fFollowsFirst = fIsFirst;
    fIsFirst = isFirst;
    fHolds = true;
    fTarget = target;
    fWeight = weight;
    fEnd = end;
  }

  // A row that belongs to no run: its entries, then the row itself.
  void AddEntry(unsigned char target, std::uint64_t weight) {
    fTotal += weight;
    WriteEntry(fEntries++, target, weight);
  }
  void AddRow(std::size_t end) { WriteRow(fRows++, end); }

  // Ends the run.
  void Close() {
    if (fHolds) WriteHeld(true);
    fHolds = false;
  }

 private:
  void WriteHeld(bool isLast) {
    const bool startsInside = fRightClosed ? fFollowsFirst : isLast;
    const bool starts = (static_cast<int>(fIsFirst) | static_cast<int>(startsInside)) != 0;
    fRows += starts;
    fEntries += starts;
    fRowWeight = (starts ? 0 : fRowWeight) + fWeight;
    fTotal += fWeight;
    WriteEntry(fEntries - 1, fTarget, fRowWeight);
    WriteRow(fRows - 1, fEnd);
  }

  void WriteEntry(std::size_t entry, unsigned char target, std::uint64_t weight) {
    fIsCountable &= weight <= kLargestEntry;
    fEntryClasses[entry] = target;
    fEntryWeights[entry] = static_cast<std::uint32_t>(weight);
  }

  void WriteRow(std::size_t row, std::size_t end) {
    fRowEntries[row] = static_cast<std::uint32_t>(fEntries);
    fRowTuples[row] = static_cast<std::uint32_t>(end);
  }

  unsigned char* fEntryClasses;
  std::uint32_t* fEntryWeights;
  std::uint32_t* fRowEntries;
  std::uint32_t* fRowTuples;
  std::size_t fMostRows;
  bool fRightClosed;

  std::size_t fRows = 0;
  std::size_t fEntries = 0;
  std::uint64_t fRowWeight = 0;  // of the last row, while a run goes on
  std::uint64_t fTotal = 0;
  bool fIsCountable = true;

  // The value that is held back, if any.
  bool fHolds = false;
  bool fIsFirst = false;       // of its run
  bool fFollowsFirst = false;  // the first of its run
  unsigned char fTarget = 0;
  std::uint64_t fWeight = 0;
  std::size_t fEnd = 0;
};

// Fills rows one after the other.
class WholeWeightRows::Writer {
 public:
  // Both are borrowed.
  Writer(WholeWeightRows& rows, std::span<const BINDataTuple> tuples)
      : fRows(rows), fTuples(tuples), fPlace(rows) {}

  // Adds the values from tuple `first` on that have one tuple each, as long as they can be
  // counted: where they end.
  std::size_t AddSingles(std::size_t first) {
    Place place = fPlace;  // here, so that it can be kept in registers
    const std::span<const BINDataTuple> tuples = fTuples;
    for (; first < tuples.size() && place.HasRoom(); ++first) {
      FetchAhead(tuples, first);
      const BINDataTuple& tuple = tuples[first];
      const bool isSingle = first + 1 == tuples.size() || tuples[first + 1].value != tuple.value;
      if (!isSingle || !fRows.IsCountable(tuple)) break;
      place.AddPure(tuple.target, Whole(tuple.weight), first + 1);
    }
    fPlace = place;
    return first;
  }

  // Adds the value of tuple `first`: where its tuples end; `first` if they cannot be counted.
  std::size_t AddValue(std::size_t first) {
    std::size_t end = first;
    for (; end < fTuples.size() && fTuples[end].value == fTuples[first].value; ++end) {
      if (!Collect(end)) return first;
    }
    if (!fPlace.HasRoom()) return first;
    if (fClassCount != 1) {
      AddCollected(end);
    } else {
      fPlace.AddPure(fClasses[0], std::exchange(fCollected[fClasses[0]], 0), end);
      fClassCount = 0;
    }
    return end;
  }

  // Adds a tuple to the row that is being collected; false if it cannot be counted.
  bool Collect(std::size_t i) {
    FetchAhead(fTuples, i);
    const BINDataTuple& tuple = fTuples[i];
    if (!fRows.IsCountable(tuple)) return false;
    std::uint64_t& collected = fCollected[tuple.target];
    if (collected == 0) fClasses[fClassCount++] = tuple.target;
    collected += Whole(tuple.weight);
    return true;
  }

  // Makes a row of what has been collected; its tuples end before `end`.
  void AddCollected(std::size_t end) {
    fPlace.Close();
    for (std::size_t c = 0; c < fClassCount; ++c) {
      fPlace.AddEntry(fClasses[c], std::exchange(fCollected[fClasses[c]], 0));
    }
    fPlace.AddRow(end);
    fClassCount = 0;
  }

  // False when a weight has become too large to be counted.
  bool Finish() {
    fPlace.Close();
    if (!fPlace.IsCountable()) return false;
    fRows.fCount = fPlace.Rows();
    fRows.fTotalWeight = fPlace.TotalWeight();
    fRows.FindBoundaries();
    fRows.SumStretches();
    return true;
  }

 private:
  WholeWeightRows& fRows;
  std::span<const BINDataTuple> fTuples;
  Place fPlace;
  std::array<std::uint64_t, 256> fCollected{};  // per class
  std::array<unsigned char, 256> fClasses{};    // those that have been collected
  std::size_t fClassCount = 0;
};

bool WholeWeightRows::FillByValue(std::span<const BINDataTuple> tuples, std::size_t distinct,
                                  std::size_t classes, bool rightClosed) {
  if (!Start(tuples, distinct, classes, rightClosed)) return false;
  Writer writer(*this, tuples);
  for (std::size_t first = 0; first < tuples.size();) {
    first = writer.AddSingles(first);
    if (first == tuples.size()) break;
    const std::size_t end = writer.AddValue(first);
    if (end == first) return false;
    first = end;
  }
  return writer.Finish();
}

bool WholeWeightRows::FillByBorders(std::span<const BINDataTuple> tuples, std::size_t classes,
                                    bool rightClosed, std::span<const double> borders) {
  if (!Start(tuples, borders.size() - 1, classes, rightClosed)) return false;
  Writer writer(*this, tuples);
  std::size_t border = 1;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    for (; !IsInside(tuples[i].value, borders[border], rightClosed); ++border) {
      writer.AddCollected(i);
    }
    if (!writer.Collect(i)) return false;
  }
  if (border + 1 != borders.size()) return false;  // the tuples do not reach the last bin
  writer.AddCollected(tuples.size());
  return writer.Finish();
}

// No boundary: a row and the next are pure in one and the same class.
void WholeWeightRows::FindBoundaries() {
  for (int row = 0; row + 1 < Count(); ++row) {
    const std::size_t entry = FirstEntryOf(row);
    const std::size_t next = EndEntryOf(row);
    fIsBoundary[static_cast<std::size_t>(row)] = next - entry != 1 ||
                                                 EndEntryOf(row + 1) - next != 1 ||
                                                 fEntryClasses[entry] != fEntryClasses[next];
  }
}

void WholeWeightRows::SumStretches() {
  const auto stretch = static_cast<std::size_t>(RowsInStretch());
  fSums.resize((fCount / stretch + 1) * fClasses);
  Weights weights(fClasses, 0);
  auto sums = fSums.begin();
  std::size_t entry = 0;
  for (std::size_t row = 0; row < fCount; row += stretch) {
    sums = std::copy(weights.begin(), weights.end(), sums);
    const std::size_t end = fRowEntries[std::min(row + stretch, fCount) - 1];
    for (; entry < end; ++entry) weights[fEntryClasses[entry]] += fEntryWeights[entry];
  }
  if (fCount % stretch == 0) std::copy(weights.begin(), weights.end(), sums);
}

void WholeWeightRows::SumBefore(int row, Weights& weights) const {
  const int stretch = row / RowsInStretch();
  const auto sums = fSums.begin() + static_cast<std::ptrdiff_t>(fClasses) * stretch;
  weights.assign(sums, sums + static_cast<std::ptrdiff_t>(fClasses));
  const std::size_t end = row == 0 ? 0 : EndEntryOf(row - 1);
  for (std::size_t e = FirstEntryOf(stretch * RowsInStretch()); e < end; ++e) {
    weights[fEntryClasses[e]] += fEntryWeights[e];
  }
}

}  // namespace TQBinning
