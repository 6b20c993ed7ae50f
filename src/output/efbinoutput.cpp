#include "tqbinning/efbinoutput.h"

#include <algorithm>
#include <ostream>

#include "common/lineend.h"
#include "common/raise.h"
#include "output/displayresults.h"

using namespace TQBinning;

BINAttributeResults::BINAttributeResults()
    : fAttributeIndex(-1),
      fNDistinctValues(0),
      fTotalWeight(0.0),
      fTotalWeightWithMissing(0.0),
      fMinimum(0.0),
      fMaximum(0.0) {}

BINAttributeResults::BINAttributeResults(const BINAttributeResults&) = default;
BINAttributeResults& BINAttributeResults::operator=(const BINAttributeResults&) = default;
BINAttributeResults::~BINAttributeResults() = default;

TQStatus BINAttributeResults::GetStatus() const { return fStatus; }
int BINAttributeResults::GetAttributeIndex() const { return fAttributeIndex; }
const std::vector<double>& BINAttributeResults::GetCutPoints() const { return fCutPoints; }
const std::vector<double>& BINAttributeResults::GetCellCounts() const { return fCellCounts; }
unsigned int BINAttributeResults::GetNDistinctValues() const { return fNDistinctValues; }
double BINAttributeResults::GetTotalWeight() const { return fTotalWeight; }
double BINAttributeResults::GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }
double BINAttributeResults::GetMinimum() const { return fMinimum; }
double BINAttributeResults::GetMaximum() const { return fMaximum; }

std::ostream& BINAttributeResults::Display(std::ostream& os) const {
  os << LineEnd;
  os << "Start of BINAttributeResults display" << LineEnd;
  DisplayAttributeIndex(os, fAttributeIndex);
  DisplaySummary(os, fNDistinctValues, fTotalWeight, fTotalWeightWithMissing, fMinimum, fMaximum);
  DisplayFailure(os, fStatus);
  DisplayCutPoints(os, fCutPoints);
  os << "The CellCounts are" << LineEnd;
  DisplayCounts(os, fCellCounts);
  return os << "End of BINAttributeResults display" << LineEnd;
}

EFBINOutput::EFBINOutput() = default;
EFBINOutput::EFBINOutput(const EFBINOutput&) = default;
EFBINOutput& EFBINOutput::operator=(const EFBINOutput&) = default;
EFBINOutput::~EFBINOutput() = default;

TQStatus EFBINOutput::SetAttributeResults(TQStatus status, const std::vector<double>& cutPoints,
                                          const std::vector<double>& cellCounts, int attributeIndex,
                                          unsigned int nDistinctValues, double totalWeight,
                                          double totalWeightWithMissing, double minimum,
                                          double maximum) {
  if (attributeIndex < 0) return Error(kInvalidAttributeIndex);

  BINAttributeResults results;
  results.fStatus = status;
  results.fAttributeIndex = attributeIndex;
  results.fCutPoints = cutPoints;
  results.fCellCounts = cellCounts;
  results.fNDistinctValues = nDistinctValues;
  results.fTotalWeight = totalWeight;
  results.fTotalWeightWithMissing = totalWeightWithMissing;
  results.fMinimum = minimum;
  results.fMaximum = maximum;
  fResults.push_back(results);
  return TQStatus();
}

TQStatus EFBINOutput::GetAttributeCutPoints(int attributeIndex, BINAttributeResults& out) const {
  if (attributeIndex < 0) return Error(kInvalidIndex);
  const auto found = std::find_if(fResults.begin(), fResults.end(),
                                  [attributeIndex](const BINAttributeResults& results) {
                                    return results.GetAttributeIndex() == attributeIndex;
                                  });
  if (found == fResults.end()) return Error(kInvalidIndex);
  out = *found;
  return out.GetStatus();
}

TQStatus EFBINOutput::GetAllCutPoints(std::vector<BINAttributeResults>& out) const {
  if (fResults.empty()) return Error(kNoResults);
  out = fResults;
  return TQStatus();
}

std::ostream& EFBINOutput::Display(std::ostream& os) const {
  return DisplayResults(os, "EFBINOutput", fResults);
}
