#pragma once

#include <memory>
#include <string>

#include "tqbinning/bindatapreparator.h"
#include "tqbinning/bindataset.h"
#include "tqbinning/tqstatus.h"

class BINCancelInfo;
class BINVarList;
class ProgressListener;

namespace TQCommon {
class RecordIterator;
}

// What the drivers of both families do around the data pass.
namespace TQBinning {

// What the pass takes from the settings of either family.
struct PassSettings {
  std::string tempDirectory;
  ProgressListener* listener;
  int progressInterval;
};

template <typename Settings>
PassSettings PassSettingsOf(const Settings& settings) {
  return {settings.GetTempDirName(), settings.GetProgressListener(),
          settings.GetNSkippedCasesReports()};
}

// Makes preparator and data set and runs the data pass, unless an earlier call has
// done so.  The outcome of the pass, for every call alike; error 120004, with
// nothing made, when the iterator holds no case.  Never throws.
TQStatus PrepareData(TQCommon::RecordIterator& records, BINVarList& varList,
                     BINCancelInfo& cancelInfo, const PassSettings& settings,
                     std::unique_ptr<BINDataPreparator>& preparator,
                     std::unique_ptr<BINDataSet>& dataSet);

// What the data set knows about the current attribute, as results keep it.
struct AttributeSummary {
  unsigned int nDistinctValues = 0;
  double totalWeight = 0.0;
  double totalWeightWithMissing = 0.0;
  double minimum = 0.0;
  double maximum = 0.0;
};
AttributeSummary SummaryOf(const BINDataSet& dataSet);

}  // namespace TQBinning
