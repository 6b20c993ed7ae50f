// The arithmetic side of BINAlgorithm: from a pair's sorted tuples to cuts, cell
// counts and model entropy.
#include <algorithm>
#include <functional>
#include <limits>
#include <span>
#include <utility>

#include "algorithm/cutsearchmemory.h"
#include "algorithm/entropykernel.h"
#include "algorithm/littlebins.h"
#include "algorithm/wholeweightsplit.h"
#include "common/raise.h"
#include "common/runmemory.h"
#include "tqbinning/binalgorithm.h"
#include "tqbinning/bindataset.h"

using namespace TQBinning;

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();

std::span<const double> First(const std::vector<double>* values, std::size_t count) {
  return std::span(*values).first(count);
}

// Bin b of the result holds the rows up to the b-th cut: including the row of that
// value when the right border is closed, excluding it when it is open.
std::vector<double> CountCells(std::span<const double> rowValues, const CountsTable& table,
                               const std::set<double>& cuts, bool rightBorderClosed) {
  const std::size_t width = table.Classes() + 1;
  std::vector<double> cells((cuts.size() + 1) * width, 0.0);
  auto bin = cells.begin();
  auto cut = cuts.begin();
  for (std::size_t row = 0; row < rowValues.size(); ++row) {
    const bool isAtCut = cut != cuts.end() && rowValues[row] == *cut;
    if (isAtCut && !rightBorderClosed) bin += static_cast<std::ptrdiff_t>(width);
    const std::span<const double> weights = table.Row(static_cast<int>(row));
    for (std::size_t j = 0; j < weights.size(); ++j) {
      bin[static_cast<std::ptrdiff_t>(j + 1)] += weights[j];
      bin[0] += weights[j];
    }
    if (isAtCut && rightBorderClosed) bin += static_cast<std::ptrdiff_t>(width);
    if (isAtCut) ++cut;
  }
  return cells;
}

// Splits the rows by whole numbers.  `valueOf(row)` is the value that a row stands for.
template <typename ValueOf>
void SplitWholeWeights(CutSearchMemory& memory, std::size_t mostEntries, ValueOf valueOf,
                       std::set<double>& cuts, std::vector<double>& cellCounts) {
  memory.nLogN.Prepare(memory.rows.TotalWeight(), mostEntries);
  WholeWeightSplit::Bins bins = WholeWeightSplit(memory.rows, memory.nLogN).Split();
  for (const int row : bins.cutRows) cuts.insert(valueOf(row));
  cellCounts = std::move(bins.cellCounts);
}

// A table of n log n may take a little more than the tuples themselves.
std::size_t MostTableEntries(std::size_t tuples) { return 4 * tuples + 65536; }

}  // namespace

double BINAlgorithm::Entropy(const std::vector<double>* classCounts) const {
  return TQBinning::Entropy(First(classCounts, fNumCategories + 1));
}

double BINAlgorithm::ComputeEntropy(const std::vector<double>* left,
                                    const std::vector<double>* right) const {
  return SplitEntropy(First(left, fNumCategories + 1), First(right, fNumCategories + 1));
}

double BINAlgorithm::ComputeDelta(const std::vector<double>* left, const std::vector<double>* right,
                                  double entropyAll) const {
  return SplitDelta(First(left, fNumCategories + 1), First(right, fNumCategories + 1), entropyAll);
}

int BINAlgorithm::FindBestCutPoint(const std::vector<double>* counts, int first, int last,
                                   std::vector<double>* left, std::vector<double>* right) const {
  return FindBestCut(CountsTable(*counts, fNumCategories), first, last, fRightBorderClosed, *left,
                     *right);
}

TQStatus BINAlgorithm::MDLPCut(const std::vector<double>* values, const std::vector<double>* counts,
                               int first, int last, std::set<double>& cuts) const {
  if (values == nullptr || counts == nullptr || fNumCategories == 0 ||
      counts->size() / fNumCategories != values->size()) {
    return Error(kInvalidTable);
  }
  const CountsTable table(*counts, fNumCategories);
  std::vector<double> left(fNumCategories + 1);
  std::vector<double> right(fNumCategories + 1);
  std::vector<std::pair<int, int>> pending{{first, last}};  // a stack of row intervals
  while (!pending.empty()) {
    const auto [from, to] = pending.back();
    pending.pop_back();
    if (to - from < 1) continue;

    table.Sum(from, to, right);
    std::fill(left.begin(), left.end(), 0.0);
    const double weight = right[0];
    const double entropyAll = Entropy(&right);
    const int position = FindBestCutPoint(counts, from, to, &left, &right);
    if (!IsWorthSplitting(left, right, entropyAll, weight)) continue;

    cuts.insert((*values)[static_cast<std::size_t>(position)]);
    const int lastLeft = fRightBorderClosed ? position : position - 1;
    // A cut that leaves a side without rows separates nothing, and would come up
    // again for ever.
    if (lastLeft < from || lastLeft >= to) continue;
    pending.emplace_back(lastLeft + 1, to);
    pending.emplace_back(from, lastLeft);  // split next: left part first
  }
  return TQStatus();
}

TQStatus BINAlgorithm::MDLP(const std::vector<BINDataTuple>* tuples, std::set<double>& cuts,
                            std::vector<double>& cellCounts, double& modelEntropy) const {
  const auto valid = std::span(*tuples).first(fRecordCount);
  const bool isSplit = RunMemory<CutSearchMemory>::With([&](CutSearchMemory& memory) {
    WholeWeightRows& rows = memory.rows;
    if (!rows.FillByValue(valid, fDataSet->GetNumberOfDistinctValues(), fNumCategories,
                          fRightBorderClosed)) {
      return false;
    }
    // A row stands for its own value, the outermost one for the end of the axis.
    const auto valueOf = [&](int row) {
      if (fRightBorderClosed && row == rows.Count() - 1) return kHighest;
      if (!fRightBorderClosed && row == 0) return kLowest;
      return valid[rows.TupleAtCut(row)].value;
    };
    SplitWholeWeights(memory, MostTableEntries(valid.size()), valueOf, cuts, cellCounts);
    return true;
  });
  if (isSplit) return FinishBins(cuts, cellCounts, modelEntropy);

  // Each bin between these borders holds one distinct value.
  std::vector<double> borders{kLowest};
  for (const BINDataTuple& tuple : valid) {
    if (borders.size() == 1 || tuple.value != borders.back()) borders.push_back(tuple.value);
  }
  if (borders.size() > 1) {
    // The outermost value has no neighbour to be cut from.
    borders.erase(fRightBorderClosed ? borders.end() - 1 : borders.begin() + 1);
  }
  borders.push_back(kHighest);
  return BinRows(borders, cuts, cellCounts, modelEntropy);
}

TQStatus BINAlgorithm::MDLP(const std::vector<BINDataTuple>* tuples,
                            std::vector<double>& percentileCuts, std::set<double>& cuts,
                            std::vector<double>& cellCounts, double& modelEntropy) const {
  const auto valid = std::span(*tuples).first(fRecordCount);
  // A border at the data's edge has no tuple beyond it.
  if (!percentileCuts.empty() && !valid.empty()) {
    if (fRightBorderClosed) {
      if (percentileCuts.back() == valid.back().value) percentileCuts.pop_back();
    } else if (percentileCuts.front() == valid.front().value) {
      percentileCuts.erase(percentileCuts.begin());
    }
  }
  percentileCuts.push_back(kHighest);
  percentileCuts.insert(percentileCuts.begin(), kLowest);

  const bool ascends = std::is_sorted(percentileCuts.begin(), percentileCuts.end(),
                                      std::less_equal<>());  // strictly
  const bool isSplit =
      ascends && RunMemory<CutSearchMemory>::With([&](CutSearchMemory& memory) {
        if (!memory.rows.FillByBorders(valid, fNumCategories, fRightBorderClosed, percentileCuts)) {
          return false;
        }
        const auto valueOf = [&](int row) {
          return percentileCuts[static_cast<std::size_t>(fRightBorderClosed ? row + 1 : row)];
        };
        SplitWholeWeights(memory, MostTableEntries(valid.size()), valueOf, cuts, cellCounts);
        return true;
      });
  if (isSplit) return FinishBins(cuts, cellCounts, modelEntropy);
  return BinRows(percentileCuts, cuts, cellCounts, modelEntropy);
}

// `borders` holds the rows' borders from -infinity to infinity, and is left holding
// one value per row.
TQStatus BINAlgorithm::BinRows(std::vector<double>& borders, std::set<double>& cuts,
                               std::vector<double>& cellCounts, double& modelEntropy) const {
  std::vector<double> table;
  const TQStatus status = fDataSet->CreateBinTable(&borders, fRightBorderClosed, table);
  if (!status.IsOK()) return status;

  // A row stands for its upper border when that is closed, for its lower one if not.
  if (fRightBorderClosed) {
    borders.erase(borders.begin());
  } else {
    borders.pop_back();
  }
  const int rows = static_cast<int>(table.size() / fNumCategories);
  const TQStatus search = MDLPCut(&borders, &table, 0, rows - 1, cuts);
  if (search.IsError() && !cuts.empty()) return search;  // without a cut, that is reported
  cellCounts = CountCells(borders, CountsTable(table, fNumCategories), cuts, fRightBorderClosed);
  return FinishBins(cuts, cellCounts, modelEntropy);
}

TQStatus BINAlgorithm::FinishBins(std::set<double>& cuts, std::vector<double>& cellCounts,
                                  double& modelEntropy) const {
  const TQStatus status = cuts.empty() ? Warning(kNoCutAccepted) : TQStatus();
  // With one cut there is no inner bin.
  if (fSettings.GetSmallBinDetectionThreshold() > 0.0 && cuts.size() > 1) {
    ProcessLittleBins(&cellCounts, cuts);
  }
  if (!cellCounts.empty()) ComputeModelEntropy(cellCounts, modelEntropy);
  return status;
}

void BINAlgorithm::ProcessLittleBins(std::vector<double>* cellCounts,
                                     std::set<double>& cuts) const {
  MergeLittleBins(*cellCounts, cuts, fNumCategories, fSettings.GetSmallBinDetectionThreshold());
}

void BINAlgorithm::ComputeModelEntropy(const std::vector<double>& cellCounts,
                                       double& modelEntropy) const {
  const std::size_t width = fNumCategories + 1;
  double sum = 0.0;
  for (std::size_t bin = 0; bin + width <= cellCounts.size(); bin += width) {
    const auto counts = std::span(cellCounts).subspan(bin, width);
    sum += counts[0] * TQBinning::Entropy(counts);
  }
  modelEntropy = sum / fDataSet->GetValidWeightTotal();
}
