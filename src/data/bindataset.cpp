#include "tqbinning/bindataset.h"

#include <algorithm>
#include <exception>
#include <span>
#include <utility>

#include "common/categorycode.h"
#include "common/missing.h"
#include "common/raise.h"
#include "common/runmemory.h"
#include "data/casesorter.h"
#include "data/sortedvalues.h"
#include "data/tuplesort.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/binvarlist.h"

using namespace TQBinning;

BINDataSet::BINDataSet(TQCommon::RecordIterator& source, BINDataPreparator& preparator)
    : fNumberOfClasses(0),
      fHasWeight(false),
      fHasTarget(false),
      fSource(source),
      fPreparator(preparator),
      fThresholdSet(false),
      fVariableIndex(nullptr),
      fNumberOfValidTuples(0),
      fNumberOfDistinctValues(0),
      fNumberOfCases(0),
      fValidWeightTotal(0.0),
      fWeightTotal(0.0),
      fDistinctThreshold(0),
      fExceedsThreshold(false),
      fTargetColumn(0),
      fWeightColumn(-1),
      fMinimum(TQMV::gMissingValue),
      fMaximum(TQMV::gMissingValue),
      fUnwrittenColumn(-1) {}

BINDataSet::~BINDataSet() = default;

// A BinaryRecordIterator has virtual operations but no virtual destructor, by its
// binary interface; none of a derived class is ever held here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor"
void BINDataSet::ReaderDeleter::operator()(BinaryRecordIterator* reader) const { delete reader; }
#pragma GCC diagnostic pop

TQStatus BINDataSet::HandleDataFile() {
  const TQStatus status = fPreparator.ProcessSource(fSource);
  if (status.IsError()) return status;

  fHasWeight = fPreparator.GetVarList().GetWeightIndex() >= 0;
  fHasTarget = fPreparator.GetVarList().GetTargetIndex() >= 0;
  fNumberOfCases = fPreparator.GetNumberOfKeptCases();
  fFileNames = fPreparator.GetFileNames();
  fVariableIndex = &fPreparator.GetVariableIndex();
  const TQStatus allocation = AllocateTuples();
  if (allocation.IsError()) return allocation;

  if (fHasTarget) {
    fTargetColumn = 0;
    fTargetReader = OpenColumn(fTargetColumn);
  }
  if (fHasWeight) {
    fWeightColumn = fHasTarget ? 1 : 0;
    fWeightReader = OpenColumn(fWeightColumn);
  }
  return status;
}

TQStatus BINDataSet::AllocateTuples() {
  try {
    if (fHasTarget) {
      fSupervisedTuples = std::make_unique<std::vector<BINDataTuple>>(fNumberOfCases);
    } else {
      fUnsupervisedTuples = std::make_unique<std::vector<EFBINDataTuple>>(fNumberOfCases);
    }
  } catch (const std::exception&) {
    return Error(kResourceFailure);
  }
  return TQStatus();
}

void BINDataSet::SetThresholdDistinct(unsigned int threshold) {
  if (threshold == 0) return;
  fDistinctThreshold = threshold;
  fThresholdSet = true;
}

bool BINDataSet::SetNumberOfCases(unsigned long n) {
  if (n == 0) return false;
  fNumberOfCases = n;
  return true;
}

// -1 for a variable without a column, or one that is not in the list.
int BINDataSet::ColumnOf(unsigned int variable) const {
  if (fVariableIndex == nullptr || variable >= fVariableIndex->size()) return -1;
  return (*fVariableIndex)[variable];
}

// A column without a file gets a reader that has nothing to read.
BINDataSet::Reader BINDataSet::OpenColumn(int column) const {
  const auto position = static_cast<std::size_t>(column);  // of -1: beyond every name
  return Reader(new BinaryRecordIterator(position < fFileNames.size() ? fFileNames[position]
                                                                      : std::string()));
}

TQStatus BINDataSet::IsValidTarget(int target, bool& isValid) {
  if (target < 0) return Error(kTargetNotUsable);
  return fPreparator.IsValidTarget(ColumnOf(static_cast<unsigned int>(target)), isValid);
}

namespace {

// Hands out a column's values block by block.
class ColumnBlocks {
 public:
  static constexpr std::size_t kSize = 8192;

  // `reader` is borrowed and may be null, for a column that does not exist.
  // cppcheck-suppress uninitMemberVar ; values are read before they are looked at
  explicit ColumnBlocks(BinaryRecordIterator* reader) : fReader(reader) {}

  // The number of values that were there, at most `count`; behind them come zeros.
  std::size_t Read(std::size_t count) {
    const std::size_t got = fReader->NextBlock(fValues, count);
    std::fill(fValues + got, fValues + count, 0.0);
    return got;
  }
  double operator[](std::size_t i) const { return fValues[i]; }

  // Takes what is missing out of the first `count` values read: those that remain.
  std::span<const double> KeepValid(std::size_t count) {
    double* end = fValues + count;
    // Counted first, which needs no branches, as most columns have nothing to take out.
    if (std::count(fValues, end, TQMV::gMissingValue) != 0) {
      end = std::remove(fValues, end, TQMV::gMissingValue);
    }
    return {fValues, end};
  }

 private:
  BinaryRecordIterator* fReader;
  double fValues[kSize];
};

struct CaseTotals {
  std::size_t validCases = 0;
  double weight = 0.0;
  double validWeight = 0.0;
};

// Reads the cases of one attribute, all files in step.  What can be asked once per
// attribute is asked by the template's arguments and not once per case: the first of
// target, weight and attribute that exists counts the cases.  `store(i, value, code,
// weight)` keeps valid case i; at most `most` are kept, however long a file has become.
template <bool kHasTarget, bool kHasWeight, typename Store>
CaseTotals ReadCases(ColumnBlocks& values, ColumnBlocks& targets, ColumnBlocks& weights,
                     std::size_t most, Store store) {
  ColumnBlocks& leader = kHasTarget ? targets : kHasWeight ? weights : values;
  const double missing = TQMV::gMissingValue;
  CaseTotals totals;
  while (const std::size_t count = leader.Read(ColumnBlocks::kSize)) {
    if (kHasTarget || kHasWeight) values.Read(count);
    if (kHasTarget && kHasWeight) weights.Read(count);
    for (std::size_t i = 0; i < count; ++i) {
      const double weight = kHasWeight ? weights[i] : 1.0;
      if (kHasWeight && weight == missing) continue;
      totals.weight += weight;
      if (values[i] == missing || (kHasTarget && targets[i] == missing)) continue;
      if (totals.validCases == most) continue;
      totals.validWeight += weight;
      store(totals.validCases++, values[i], kHasTarget ? targets[i] : 0.0, weight);
    }
  }
  return totals;
}

// Takes in a case that is only counted.
void Forget(std::size_t, double, double, double) {}

// Whether a reader, which may be absent, could read what there is.
bool IsWhole(const TQBinning::BinaryRecordIterator* reader) {
  return reader == nullptr || !reader->HasReadError();
}

}  // namespace

// False when the disk failed: zeros stand then for what it holds.
template <typename Store>
bool BINDataSet::ReadColumn(unsigned int column, Store store) {
  if (fTargetReader) fTargetReader->NewPass();
  if (fWeightReader) fWeightReader->NewPass();
  const Reader attributeReader = OpenColumn(static_cast<int>(column));
  ColumnBlocks values(attributeReader.get());
  ColumnBlocks targets(fTargetReader.get());
  ColumnBlocks weights(fWeightReader.get());
  const std::size_t most = fNumberOfCases;
  const CaseTotals totals =
      fTargetReader && fWeightReader ? ReadCases<true, true>(values, targets, weights, most, store)
      : fTargetReader                ? ReadCases<true, false>(values, targets, weights, most, store)
      : fWeightReader                ? ReadCases<false, true>(values, targets, weights, most, store)
                      : ReadCases<false, false>(values, targets, weights, most, store);
  fNumberOfValidTuples = static_cast<unsigned int>(totals.validCases);
  fWeightTotal = totals.weight;
  fValidWeightTotal = totals.validWeight;
  return IsWhole(attributeReader.get()) && IsWhole(fTargetReader.get()) &&
         IsWhole(fWeightReader.get());
}

TQStatus BINDataSet::ReadNextAttribute(unsigned int column) {
  // GetAttribute, for which it is done, tells of the disk.
  (void)WriteTuples();
  (void)ReadTuples(column);
  return TQStatus();
}

// Reads a column's valid cases in their order.  False when the disk failed.
bool BINDataSet::ReadTuples(unsigned int column) {
  BINDataTuple* const supervised =
      fTargetReader && fSupervisedTuples ? fSupervisedTuples->data() : nullptr;
  EFBINDataTuple* const unsupervised =
      !fTargetReader && fUnsupervisedTuples ? fUnsupervisedTuples->data() : nullptr;
  return ReadColumn(column, [&](std::size_t i, double value, double target, double weight) {
    if (supervised != nullptr) supervised[i] = {value, CategoryCode(target), weight};
    if (unsupervised != nullptr) unsupervised[i] = {value, weight};
  });
}

// Reads a column's valid cases into a sorter, where a case is its value, which can be done
// block by block.  False when the disk failed.
template <typename Intake>
bool BINDataSet::TakeInValues(Intake& intake, unsigned int column) {
  const Reader reader = OpenColumn(static_cast<int>(column));
  ColumnBlocks blocks(reader.get());
  std::size_t cases = 0;
  std::size_t validCases = 0;
  while (const std::size_t count = blocks.Read(ColumnBlocks::kSize)) {
    std::span<const double> valid = blocks.KeepValid(count);
    valid = valid.first(std::min(valid.size(), fNumberOfCases - validCases));
    intake.AddAll(valid);
    cases += count;
    validCases += valid.size();
  }
  fNumberOfValidTuples = static_cast<unsigned int>(validCases);
  fWeightTotal = static_cast<double>(cases);
  fValidWeightTotal = static_cast<double>(validCases);
  return IsWhole(reader.get());
}

// The same for cases of any kind.
bool BINDataSet::TakeIn(CaseSorter& sorter, unsigned int column) {
  CaseSorter::Intake intake(sorter);
  if (!fTargetReader && !fWeightReader) return TakeInValues(intake, column);
  return ReadColumn(column, [&](std::size_t, double value, double target, double weight) {
    intake.Add(value, CategoryCode(target), weight);
  });
}

// Sorts what was taken in from a column into tuples.  False when the disk failed.
template <typename Tuple>
bool BINDataSet::SortInto(std::vector<Tuple>& tuples, unsigned int column, CaseSorter& sorter,
                          SortMemory& memory) {
  bool isRead = true;
  const auto valid = [&] { return std::span(tuples).first(fNumberOfValidTuples); };
  if (sorter.IsSuitable()) {
    fNumberOfDistinctValues = sorter.Sort(valid());
  } else {
    isRead = ReadTuples(column);
    SortByValue(valid(), memory);
    fNumberOfDistinctValues = CountDistinct<Tuple>(valid());
  }
  if (fNumberOfValidTuples == 0) return isRead;
  fMinimum = tuples.front().value;
  fMaximum = tuples[fNumberOfValidTuples - 1].value;
  return isRead;
}

void BINDataSet::ForgetAttribute() {
  fNumberOfDistinctValues = 0;
  fMinimum = TQMV::gMissingValue;
  fMaximum = TQMV::gMissingValue;
}

// Reads a column's valid cases into sorted tuples.  A vector that is absent (tuples of
// the other kind are kept) holds none.  False when the disk failed.
template <typename Tuple>
bool BINDataSet::ReadSorted(unsigned int column, std::vector<Tuple>* tuples) {
  ForgetAttribute();
  if (tuples == nullptr) return ReadColumn(column, Forget);

  bool isRead = false;
  RunMemory<SortMemory>::With([&](SortMemory& memory) {
    CaseSorter sorter(memory, fNumberOfCases);
    isRead = TakeIn(sorter, column);
    isRead = SortInto(*tuples, column, sorter, memory) && isRead;
  });
  return isRead;
}

// Writes the tuples that have been left unwritten.  False when the disk failed.
bool BINDataSet::WriteTuples() {
  const int column = std::exchange(fUnwrittenColumn, -1);
  return column < 0 || ReadSorted(static_cast<unsigned int>(column), fUnsupervisedTuples.get());
}

// Writes those behind the current attribute's, which its own will not cover.
void BINDataSet::WriteTail(const SortMemory& memory) {
  if (std::exchange(fUnwrittenColumn, -1) < 0) return;
  for (std::size_t i = fNumberOfValidTuples; i < fUnsupervisedTuples->size(); ++i) {
    (*fUnsupervisedTuples)[i] = {memory.values[1][i], 1.0};
  }
}

TQStatus BINDataSet::GetSorted(unsigned int attribute, std::vector<EFBINDataTuple>*& tuples,
                               SortedValues& sorted) {
  sorted = {};
  if (fTargetReader || fWeightReader || !fUnsupervisedTuples || !RunMemory<SortMemory>::IsOpen()) {
    return GetAttribute(attribute, tuples);
  }
  tuples = nullptr;
  const auto column = static_cast<unsigned int>(ColumnOf(attribute));
  bool isRead = false;
  RunMemory<SortMemory>::With([&](SortMemory& memory) {
    if (memory.sortedFor != this && !WriteTuples()) return;
    ForgetAttribute();
    CaseSorter sorter(memory, fNumberOfCases);
    isRead = TakeIn(sorter, column);
    if (!sorter.IsSuitable() || fNumberOfValidTuples != fUnsupervisedTuples->size()) {
      WriteTail(memory);
      isRead = SortInto(*fUnsupervisedTuples, column, sorter, memory) && isRead;
      return;
    }
    sorted.values = sorter.SortValues(fNumberOfDistinctValues);
    fMinimum = sorted.values.front();
    fMaximum = sorted.values.back();
    fUnwrittenColumn = static_cast<int>(column);
    memory.sortedFor = this;
  });
  if (!isRead) return Error(kResourceFailure);
  tuples = fUnsupervisedTuples.get();
  return TQStatus();
}

TQStatus BINDataSet::GetAttribute(unsigned int attribute, std::vector<EFBINDataTuple>*& tuples) {
  tuples = nullptr;
  if (!WriteTuples() ||
      !ReadSorted(static_cast<unsigned int>(ColumnOf(attribute)), fUnsupervisedTuples.get())) {
    return Error(kResourceFailure);
  }
  tuples = fUnsupervisedTuples.get();
  return TQStatus();
}

TQStatus BINDataSet::GetAttribute(unsigned int attribute, unsigned int target,
                                  std::vector<BINDataTuple>*& tuples) {
  tuples = nullptr;
  if (!WriteTuples()) return Error(kResourceFailure);
  bool isValid = false;
  const TQStatus validity = IsValidTarget(static_cast<int>(target), isValid);
  if (validity.IsError() || !isValid) return Error(kTargetNotUsable);

  const int targetColumn = ColumnOf(target);
  fNumberOfClasses = fPreparator.GetLargestCode(targetColumn) + 1;
  if (fTargetReader == nullptr || targetColumn != fTargetColumn) {
    fTargetReader = OpenColumn(targetColumn);
    fTargetColumn = targetColumn;
  }
  // A list without a target of its own had no need for these until now.
  if (fSupervisedTuples == nullptr) {
    fSupervisedTuples = std::make_unique<std::vector<BINDataTuple>>(fNumberOfCases);
  }

  if (!ReadSorted(static_cast<unsigned int>(ColumnOf(attribute)), fSupervisedTuples.get())) {
    return Error(kResourceFailure);
  }
  if (fThresholdSet) {
    fExceedsThreshold = fDistinctThreshold != 0 && fNumberOfDistinctValues > fDistinctThreshold;
  }
  tuples = fSupervisedTuples.get();
  return TQStatus();
}

TQStatus BINDataSet::CreateBinTable(const std::vector<double>* boundaries, bool rightClosed,
                                    std::vector<double>& table) {
  if (boundaries == nullptr || boundaries->empty()) return Warning(kInvalidTable);

  const std::size_t bins = boundaries->size() - 1;
  const auto classes = static_cast<std::size_t>(fNumberOfClasses);
  table.assign(bins * classes, 0.0);

  std::size_t bin = 1;  // counted from 1: bin b ends at boundary b
  const std::span<const BINDataTuple> valid =
      fSupervisedTuples
          ? std::span<const BINDataTuple>(*fSupervisedTuples).first(fNumberOfValidTuples)
          : std::span<const BINDataTuple>();
  for (const BINDataTuple& tuple : valid) {
    const auto belongs = [&](double boundary) {
      return rightClosed ? tuple.value <= boundary : tuple.value < boundary;
    };
    while (bin <= bins && !belongs((*boundaries)[bin])) ++bin;
    if (bin > bins) break;
    // Only a foreign file can hold a code beyond the largest one that was spooled.
    if (tuple.target < classes) table[(bin - 1) * classes + tuple.target] += tuple.weight;
  }
  if (bin == bins) return TQStatus();
  if (bin < bins) {  // the tuples ran out: the row that was being filled is not handed out
    std::fill_n(table.begin() + static_cast<std::ptrdiff_t>((bin - 1) * classes), classes, 0.0);
  }
  return Warning(kInvalidTable);
}

int BINDataSet::GetNumberOfClasses() const { return fNumberOfClasses; }
unsigned int BINDataSet::GetNumberOfValidTuples() const { return fNumberOfValidTuples; }
unsigned int BINDataSet::GetNumberOfDistinctValues() const { return fNumberOfDistinctValues; }
double BINDataSet::GetValidWeightTotal() const { return fValidWeightTotal; }
double BINDataSet::GetWeightTotal() const { return fWeightTotal; }
bool BINDataSet::ExceedsThreshold() const { return fExceedsThreshold; }
double BINDataSet::GetMinimum() const { return fMinimum; }
double BINDataSet::GetMaximum() const { return fMaximum; }
