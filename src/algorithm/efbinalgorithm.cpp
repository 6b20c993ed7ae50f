#include "tqbinning/efbinalgorithm.h"

#include <ostream>

#include "algorithm/componentversion.h"
#include "algorithm/createbins.h"
#include "algorithm/datapass.h"
#include "algorithm/progresspacer.h"
#include "common/lineend.h"
#include "common/raise.h"
#include "common/runmemory.h"
#include "data/sortedvalues.h"
#include "data/sortmemory.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/bindataset.h"
#include "tqbinning/binefpreprocess.h"
#include "tqcommon/tqcommon.h"

using namespace TQBinning;

IEFBINAlgorithm::~IEFBINAlgorithm() = default;

EFBINAlgorithm::EFBINAlgorithm(EFBINSettings& settings, BINVarList& varList)
    : fRecordCount(0),
      fRightBorderClosed(true),
      fNumberOfBins(0),
      fSettings(settings),
      fVarList(varList),
      fCancelInfo(settings.GetCancelPointer()),
      fWeightIndex(varList.GetWeightIndex()),
      fTuples(nullptr) {}

EFBINAlgorithm::~EFBINAlgorithm() = default;

std::string EFBINAlgorithm::GetComponentVersion() const { return ComponentVersion(); }
void EFBINAlgorithm::SetCancelPtr(TQQueryCancel* query) { fCancelInfo.SetCancelPtr(query); }
void EFBINAlgorithm::Cancel() { fCancelInfo.SetCancel(); }

void EFBINAlgorithm::SetProgressListener(ProgressListener* listener) {
  fSettings.SetProgressListener(listener);
}

const EFBINOutput& EFBINAlgorithm::GetBinningResults() const { return fOutput; }
const EFBINSettings& EFBINAlgorithm::GetSettings() const { return fSettings; }
const BINVarList& EFBINAlgorithm::GetVarList() const { return fVarList; }

TQStatus EFBINAlgorithm::GetStatus() {
  if (fCancelInfo.IsCancel()) DoCancel();
  return fStatus;
}

void EFBINAlgorithm::DoCancel() { fStatus = Error(kCancelled); }

std::ostream& EFBINAlgorithm::Display(std::ostream& os) const {
  os << LineEnd;
  os << "Start of EFBINAlgorithm display" << LineEnd;
  os << "Record count: " << fRecordCount << LineEnd;
  os << "out result: ";
  fPreparator->Display(os);
  fOutput.Display(os);
  return os << "End of EFBINAlgorithm display" << LineEnd;
}

TQStatus EFBINAlgorithm::CreateBins(TQCommon::RecordIterator& records,
                                    const std::vector<int>* attributeIndices) {
  fNumberOfBins = fSettings.GetNumberOfBins();
  const bool isFirstCall = fPreparator == nullptr;
  const auto check = [&] {
    if (attributeIndices == nullptr) return TQStatus();
    return CheckVariableIndices(attributeIndices, fIndexStatuses) ? TQStatus()
                                                                  : Error(kInvalidAttributeIndex);
  };
  const auto prepare = [&] {
    return PrepareData(records, fVarList, fCancelInfo, PassSettingsOf(fSettings), fPreparator,
                       fDataSet);
  };
  const auto bin = [&] {
    if (isFirstCall) fRightBorderClosed = fSettings.IsRightBorderClosed();  // kept for good
    return DoCreateBins(attributeIndices);
  };
  return RunCreateBins(fNumberOfBins, fCancelInfo, fStatus, check, prepare, bin,
                       [this] { DoCancel(); });
}

bool EFBINAlgorithm::CheckVariableIndices(const std::vector<int>* indices,
                                          std::vector<TQStatus>& statuses) {
  statuses.assign(indices->size(), TQStatus());
  bool hasValid = false;
  for (std::size_t i = 0; i < indices->size(); ++i) {
    statuses[i] = CheckAttribute((*indices)[i]);
    hasValid = hasValid || statuses[i].IsOK();
  }
  return hasValid;
}

TQStatus EFBINAlgorithm::CheckAttribute(int attribute) const {
  if (fVarList.GetVarAt(attribute) == nullptr) return Error(kInvalidAttributeIndex);
  if (attribute == fWeightIndex) return Error(kRoleConflict);
  return TQStatus();
}

TQStatus EFBINAlgorithm::DoCreateBins(const std::vector<int>* indices) {
  const RunMemory<SortMemory> sortMemory;
  fPreProcess = std::make_unique<BINEFPreProcess>(fNumberOfBins, fRightBorderClosed);
  ProgressPacer pacer(fSettings.GetProgressListener(), fSettings.GetNSkippedAttReports());
  TQStatus status;
  const auto run = [&](int attribute) {
    status = RunAlgorithm(static_cast<unsigned int>(attribute));
    pacer.Finished(static_cast<unsigned int>(attribute), status);
  };

  if (indices != nullptr) {
    for (std::size_t i = 0; i < indices->size(); ++i) {
      if (fIndexStatuses[i].IsOK()) {
        run((*indices)[i]);
      } else {
        // An index that cannot be stored is refused by the output, and that is all.
        (void)fOutput.SetAttributeResults(fIndexStatuses[i], {}, {}, (*indices)[i], 0, 0.0, 0.0,
                                          0.0, 0.0);
      }
    }
  } else {
    for (int v = 0; v < fVarList.Size(); ++v) {
      if (v != fWeightIndex) run(v);
    }
  }
  fPreProcess.reset();
  return status;
}

TQStatus EFBINAlgorithm::RunAlgorithm(unsigned int attributeIndex) {
  TQStatus status;
  if (!fCancelInfo.IsCancel()) {
    std::vector<double> cutPoints;
    std::vector<double> counts;
    AttributeSummary summary;
    summary.minimum = TQMV::gMissingValue;  // kept when the attribute cannot be read
    summary.maximum = TQMV::gMissingValue;
    SortedValues sorted;
    status = fDataSet->GetSorted(attributeIndex, fTuples, sorted);
    if (!status.IsError()) {
      summary = SummaryOf(*fDataSet);
      status = BinCurrentAttribute(attributeIndex, sorted, cutPoints, counts);
    }
    (void)fOutput.SetAttributeResults(
        status, cutPoints, counts, static_cast<int>(attributeIndex), summary.nDistinctValues,
        summary.totalWeight, summary.totalWeightWithMissing, summary.minimum, summary.maximum);
    if (!status.IsOK()) fStatus = status;
  }
  if (fCancelInfo.IsCancel()) {
    DoCancel();
    return fStatus;
  }
  return status;
}

// Bins what the data set has just read: `sorted`, or the tuples when there are none.
TQStatus EFBINAlgorithm::BinCurrentAttribute(unsigned int attributeIndex,
                                             const SortedValues& sorted,
                                             std::vector<double>& cutPoints,
                                             std::vector<double>& counts) {
  fRecordCount = fDataSet->GetNumberOfValidTuples();
  if (fRecordCount == 0) return Warning(kNoValidCase);

  if (!sorted.values.empty()) {
    fPreProcess->FindCutPts(sorted, cutPoints, counts);
  } else {
    fPreProcess->EFCreatePercentileCutPts(fTuples, cutPoints, counts,
                                          fDataSet->GetValidWeightTotal());
  }
  if (fDataSet->GetNumberOfDistinctValues() == 1) {
    return WithDatum(Warning(kOneDistinctValue), attributeIndex);
  }
  return cutPoints.empty() ? WithDatum(Warning(kNoCutPoint), attributeIndex) : TQStatus();
}
