#include "tqbinning/binalgorithm.h"

#include <ostream>

#include "algorithm/componentversion.h"
#include "algorithm/createbins.h"
#include "algorithm/cutsearchmemory.h"
#include "algorithm/datapass.h"
#include "algorithm/progresspacer.h"
#include "common/lineend.h"
#include "common/raise.h"
#include "common/runmemory.h"
#include "data/sortmemory.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/bindataset.h"
#include "tqbinning/binefpreprocess.h"
#include "tqcommon/tqcommon.h"

using namespace TQBinning;

IBINAlgorithm::~IBINAlgorithm() = default;

BINAlgorithm::BINAlgorithm(BINSettings& settings, BINVarList& varList)
    : fRecordCount(0),
      fNumCategories(0),
      fRightBorderClosed(true),
      fNumberOfBins(0),
      fSettings(settings),
      fVarList(varList),
      fCancelInfo(settings.GetCancelPointer()),
      fDefaultTargetIndex(varList.GetTargetIndex()),
      fWeightIndex(varList.GetWeightIndex()),
      fTuples(nullptr) {}

BINAlgorithm::~BINAlgorithm() = default;

std::string BINAlgorithm::GetComponentVersion() const { return ComponentVersion(); }
void BINAlgorithm::SetCancelPtr(TQQueryCancel* query) { fCancelInfo.SetCancelPtr(query); }
void BINAlgorithm::Cancel() { fCancelInfo.SetCancel(); }

void BINAlgorithm::SetProgressListener(ProgressListener* listener) {
  fSettings.SetProgressListener(listener);
}

const BINOutput& BINAlgorithm::GetBinningResults() const { return fOutput; }
const BINSettings& BINAlgorithm::GetSettings() const { return fSettings; }
const BINVarList& BINAlgorithm::GetVarList() const { return fVarList; }

TQStatus BINAlgorithm::GetStatus() {
  if (fCancelInfo.IsCancel()) DoCancel();
  return fStatus;
}

void BINAlgorithm::DoCancel() { fStatus = Error(kCancelled); }

std::ostream& BINAlgorithm::Display(std::ostream& os) const {
  os << "Start of BINAlgorithm display" << LineEnd;
  os << "Record count: " << fRecordCount << LineEnd;
  os << "out result: ";
  fPreparator->Display(os);
  fOutput.Display(os);
  return os << "End of BINAlgorithm display" << LineEnd;
}

TQStatus BINAlgorithm::CreateBins(TQCommon::RecordIterator& records,
                                  const std::vector<int>* attributes,
                                  const std::vector<int>* targets) {
  fNumberOfBins = fSettings.GetNumberOfBins();
  const auto check = [&] {
    if (attributes == nullptr && targets == nullptr) return TQStatus();
    return CheckVariableIndices(attributes, targets, fPairStatuses) ? TQStatus()
                                                                    : Error(kNoValidPair);
  };
  const auto prepare = [&] {
    return PrepareData(records, fVarList, fCancelInfo, PassSettingsOf(fSettings), fPreparator,
                       fDataSet);
  };
  const auto bin = [&] {
    fDataSet->SetThresholdDistinct(
        static_cast<unsigned int>(fSettings.GetNumDistinctValueThreshold()));
    fRightBorderClosed = fSettings.IsRightBorderClosed();
    return DoCreateBins(attributes, targets);
  };
  return RunCreateBins(fNumberOfBins, fCancelInfo, fStatus, check, prepare, bin,
                       [this] { DoCancel(); });
}

bool BINAlgorithm::CheckVariableIndices(const std::vector<int>* attributes,
                                        const std::vector<int>* targets,
                                        std::vector<TQStatus>& statuses) {
  if (attributes == nullptr) return false;
  if (targets != nullptr && targets->size() != attributes->size()) return false;

  statuses.assign(attributes->size(), TQStatus());
  bool hasValid = false;
  for (std::size_t i = 0; i < attributes->size(); ++i) {
    const int attribute = (*attributes)[i];
    statuses[i] =
        targets == nullptr ? CheckAttribute(attribute) : CheckPair(attribute, (*targets)[i]);
    hasValid = hasValid || statuses[i].IsOK();
  }
  return hasValid;
}

TQStatus BINAlgorithm::CheckPair(int attribute, int target) const {
  const IBINVariable* const targetVariable = fVarList.GetVarAt(target);
  if (targetVariable == nullptr || fVarList.GetVarAt(attribute) == nullptr) {
    return Error(kInvalidIndex);
  }
  const IBINVariable::MeasureLevel level = targetVariable->GetMeasureLevel();
  if (level != IBINVariable::kNumericCategorical && level != IBINVariable::kStringCategorical) {
    return Error(kTargetNotCategorical);
  }
  if (target == attribute || target == fWeightIndex || attribute == fWeightIndex) {
    return Error(kRoleConflict);
  }
  return TQStatus();
}

// For an attribute that goes against the list's own target.
TQStatus BINAlgorithm::CheckAttribute(int attribute) const {
  if (fVarList.GetVarAt(attribute) == nullptr) return Error(kInvalidAttributeIndex);
  if (attribute == fWeightIndex || attribute == fDefaultTargetIndex) return Error(kRoleConflict);
  return TQStatus();
}

TQStatus BINAlgorithm::DoCreateBins(const std::vector<int>* attributes,
                                    const std::vector<int>* targets) {
  const RunMemory<SortMemory> sortMemory;
  const RunMemory<CutSearchMemory> cutSearchMemory;
  fPreProcess = std::make_unique<BINEFPreProcess>(fNumberOfBins, fRightBorderClosed);
  ProgressPacer pacer(fSettings.GetProgressListener(), fSettings.GetNSkippedAttReports());
  TQStatus status;
  const auto run = [&](int attribute, int target) {
    status = RunAlgorithm(static_cast<unsigned int>(attribute), static_cast<unsigned int>(target));
    pacer.Finished(static_cast<unsigned int>(attribute), status);
  };

  if (attributes != nullptr) {
    for (std::size_t i = 0; i < attributes->size(); ++i) {
      const int attribute = (*attributes)[i];
      const int target = targets == nullptr ? fDefaultTargetIndex : (*targets)[i];
      if (fPairStatuses[i].IsOK()) {
        run(attribute, target);
      } else {
        // Indices that cannot be stored are refused by the output, and that is all.
        (void)fOutput.SetAttributeTargetResults(fPairStatuses[i], {}, {}, attribute, target, 0, 0.0,
                                                0.0, 0.0, 0.0, 0.0);
      }
    }
  } else {
    bool isValid = false;
    status = fDataSet->IsValidTarget(fDefaultTargetIndex, isValid);
    if (status.IsError() || !isValid) {
      status = Error(kTargetNotUsable);
    } else {
      for (int v = 0; v < fVarList.Size(); ++v) {
        if (v != fDefaultTargetIndex && v != fWeightIndex) run(v, fDefaultTargetIndex);
      }
    }
  }
  fPreProcess.reset();
  return status;
}

TQStatus BINAlgorithm::RunAlgorithm(unsigned int attribute, unsigned int target) {
  TQStatus status;
  if (!fCancelInfo.IsCancel()) {
    std::set<double> cuts;
    std::vector<double> cellCounts;
    double modelEntropy = TQMV::gMissingValue;
    AttributeSummary summary;
    status = fDataSet->GetAttribute(attribute, target, fTuples);
    if (!status.IsError()) {
      summary = SummaryOf(*fDataSet);
      status = BinCurrentPair(attribute, target, cuts, cellCounts, modelEntropy);
    }
    // A pair without a target of its own cannot be stored; its status says why.
    (void)fOutput.SetAttributeTargetResults(status, cuts, cellCounts, static_cast<int>(attribute),
                                            static_cast<int>(target), summary.nDistinctValues,
                                            summary.totalWeight, summary.totalWeightWithMissing,
                                            summary.minimum, summary.maximum, modelEntropy);
    if (!status.IsOK()) fStatus = status;
  }
  if (fCancelInfo.IsCancel()) {
    DoCancel();
    return fStatus;
  }
  return status;
}

// Bins what the data set has just read.
TQStatus BINAlgorithm::BinCurrentPair(unsigned int attribute, unsigned int target,
                                      std::set<double>& cuts, std::vector<double>& cellCounts,
                                      double& modelEntropy) {
  TQStatus status;
  fRecordCount = fDataSet->GetNumberOfValidTuples();
  fNumCategories = static_cast<unsigned int>(fDataSet->GetNumberOfClasses());
  if (fRecordCount == 0) {
    status = Warning(kNoValidCase);
  } else {
    status = BinTuples(cuts, cellCounts, modelEntropy);
    if (fDataSet->GetNumberOfDistinctValues() == 1) {
      status = WithDatum(Warning(kOneDistinctValue), attribute);
    }
  }
  if (fNumCategories == 1) status = WithDatum(Warning(kOneTargetClass), target);
  return status;
}

TQStatus BINAlgorithm::BinTuples(std::set<double>& cuts, std::vector<double>& cellCounts,
                                 double& modelEntropy) {
  if (!fDataSet->ExceedsThreshold()) return MDLP(fTuples, cuts, cellCounts, modelEntropy);

  std::vector<double> percentileCuts;
  std::vector<double> frequencies;  // not used: the row table counts the classes
  if (!fPreProcess->EFCreatePercentileCutPts(fTuples, percentileCuts, frequencies,
                                             fDataSet->GetValidWeightTotal())) {
    return TQStatus();
  }
  return MDLP(fTuples, percentileCuts, cuts, cellCounts, modelEntropy);
}
