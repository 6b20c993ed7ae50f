#include "tqbinning/binoutput.h"

#include <ostream>

#include "common/lineend.h"
#include "common/raise.h"
#include "output/displayresults.h"

using namespace TQBinning;

BINAttributeTargetResults::BINAttributeTargetResults()
    : fAttributeIndex(-1),
      fTargetIndex(-1),
      fNDistinctValues(0),
      fTotalWeight(0.0),
      fTotalWeightWithMissing(0.0),
      fMinimum(0.0),
      fMaximum(0.0),
      fModelEntropy(0.0) {}

BINAttributeTargetResults::BINAttributeTargetResults(const BINAttributeTargetResults&) = default;
BINAttributeTargetResults& BINAttributeTargetResults::operator=(const BINAttributeTargetResults&) =
    default;
BINAttributeTargetResults::~BINAttributeTargetResults() = default;

TQStatus BINAttributeTargetResults::GetStatus() const { return fStatus; }
int BINAttributeTargetResults::GetAttributeIndex() const { return fAttributeIndex; }
int BINAttributeTargetResults::GetTargetIndex() const { return fTargetIndex; }
const std::vector<double>& BINAttributeTargetResults::GetCutPoints() const { return fCutPoints; }

const std::vector<std::vector<double>>& BINAttributeTargetResults::GetCellCounts() const {
  return fCellCounts;
}

unsigned int BINAttributeTargetResults::GetNDistinctValues() const { return fNDistinctValues; }
double BINAttributeTargetResults::GetTotalWeight() const { return fTotalWeight; }

double BINAttributeTargetResults::GetTotalWeightWithMissing() const {
  return fTotalWeightWithMissing;
}

double BINAttributeTargetResults::GetMinimum() const { return fMinimum; }
double BINAttributeTargetResults::GetMaximum() const { return fMaximum; }
double BINAttributeTargetResults::GetModelEntropy() const { return fModelEntropy; }

std::ostream& BINAttributeTargetResults::Display(std::ostream& os) const {
  os << LineEnd;
  os << "Start of BINAttributeTargetResults display" << LineEnd;
  DisplayAttributeIndex(os, fAttributeIndex);
  os << "target = " << fTargetIndex << LineEnd;
  DisplaySummary(os, fNDistinctValues, fTotalWeight, fTotalWeightWithMissing, fMinimum, fMaximum);
  os << "Model Entropy = " << fModelEntropy << LineEnd;
  DisplayFailure(os, fStatus);
  DisplayCutPoints(os, fCutPoints);
  os << "The CellCounts are" << LineEnd;
  for (const std::vector<double>& row : fCellCounts) DisplayCounts(os, row);
  return os << "End of BINAttributeTargetResults display" << LineEnd;
}

BINOutput::BINOutput() = default;
BINOutput::BINOutput(const BINOutput&) = default;
BINOutput& BINOutput::operator=(const BINOutput&) = default;
BINOutput::~BINOutput() = default;

namespace {

bool AreIndicesOfAPair(int attributeIndex, int targetIndex) {
  return attributeIndex >= 0 && targetIndex >= 0 && attributeIndex != targetIndex;
}

// One row per bin from counts that stand bin after bin.
std::vector<std::vector<double>> Rows(const std::vector<double>& flat, std::size_t bins) {
  const auto width = static_cast<std::ptrdiff_t>(flat.size() / bins);
  std::vector<std::vector<double>> rows;
  rows.reserve(bins);
  auto first = flat.begin();
  for (std::size_t b = 0; b < bins; ++b, first += width) rows.emplace_back(first, first + width);
  return rows;
}

}  // namespace

TQStatus BINOutput::SetAttributeTargetResults(TQStatus status, const std::set<double>& cutPoints,
                                              const std::vector<double>& cellCounts,
                                              int attributeIndex, int targetIndex,
                                              unsigned int nDistinctValues, double totalWeight,
                                              double totalWeightWithMissing, double minimum,
                                              double maximum, double modelEntropy) {
  if (!AreIndicesOfAPair(attributeIndex, targetIndex)) return Error(kInvalidIndex);

  BINAttributeTargetResults results;
  results.fStatus = status;
  results.fAttributeIndex = attributeIndex;
  results.fTargetIndex = targetIndex;
  results.fCutPoints.assign(cutPoints.begin(), cutPoints.end());
  results.fCellCounts = Rows(cellCounts, cutPoints.size() + 1);
  results.fNDistinctValues = nDistinctValues;
  results.fTotalWeight = totalWeight;
  results.fTotalWeightWithMissing = totalWeightWithMissing;
  results.fMinimum = minimum;
  results.fMaximum = maximum;
  results.fModelEntropy = modelEntropy;
  fResults.push_back(results);
  // The first value of a pair stays the one that is looked up.
  fIndex.try_emplace({attributeIndex, targetIndex}, fResults.size() - 1);
  return TQStatus();
}

TQStatus BINOutput::GetAttributeTargetCutPoints(int attributeIndex, int targetIndex,
                                                BINAttributeTargetResults& out) const {
  if (!AreIndicesOfAPair(attributeIndex, targetIndex)) return Error(kInvalidIndex);
  const auto found = fIndex.find({attributeIndex, targetIndex});
  if (found == fIndex.end()) return Error(kInvalidIndex);
  out = fResults[found->second];
  return out.GetStatus();
}

TQStatus BINOutput::GetAttributeCutPoints(int attributeIndex,
                                          std::vector<BINAttributeTargetResults>& out) const {
  TQStatus status = Error(kInvalidIndex);  // unless a value is found
  if (attributeIndex < 0) return status;
  for (const BINAttributeTargetResults& results : fResults) {
    if (results.GetAttributeIndex() != attributeIndex) continue;
    out.push_back(results);
    status = results.GetStatus();
  }
  return status;
}

TQStatus BINOutput::GetAllCutPoints(std::vector<BINAttributeTargetResults>& out) const {
  if (fResults.empty()) return Error(kNoResults);
  out = fResults;
  return TQStatus();
}

std::ostream& BINOutput::Display(std::ostream& os) const {
  return DisplayResults(os, "BINOutput", fResults);
}
