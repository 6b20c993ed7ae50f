#include "algorithm/datapass.h"

#include "common/raise.h"
#include "tqcommon/recorditerator.h"

namespace TQBinning {

TQStatus PrepareData(TQCommon::RecordIterator& records, BINVarList& varList,
                     BINCancelInfo& cancelInfo, const PassSettings& settings,
                     std::unique_ptr<BINDataPreparator>& preparator,
                     std::unique_ptr<BINDataSet>& dataSet) {
  if (preparator != nullptr) return preparator->GetStatus();

  TQStatus status;
  try {
    if (!records.HasMore()) return Error(kNoCases);
    auto pass = std::make_unique<BINDataPreparator>(varList, cancelInfo, settings.tempDirectory,
                                                    settings.listener, settings.progressInterval);
    dataSet = std::make_unique<BINDataSet>(records, *pass);
    preparator = std::move(pass);
    status = dataSet->HandleDataFile();
  } catch (...) {  // no memory, or the host's iterator threw
    status = Error(kResourceFailure);
  }
  // Half-prepared data must not be binned by a later call either.
  if (status.IsError() && preparator != nullptr) preparator->KeepFailure(status);
  return status;
}

AttributeSummary SummaryOf(const BINDataSet& dataSet) {
  return {dataSet.GetNumberOfDistinctValues(), dataSet.GetValidWeightTotal(),
          dataSet.GetWeightTotal(), dataSet.GetMinimum(), dataSet.GetMaximum()};
}

}  // namespace TQBinning
