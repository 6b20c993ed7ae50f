// Equal-frequency binning of cases that are made one by one: whatever their number,
// the program never holds more than one of them.
#include <cmath>
#include <cstdint>
#include <iostream>
#include <memory>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

// Waiting times, exponential with a mean of ten minutes, from a small generator of
// pseudo-random numbers.
class WaitingTimes : public TQCommon::RecordIterator {
 public:
  explicit WaitingTimes(int cases) : fCasesLeft(cases) {}
  bool HasMore() override { return fCasesLeft > 0; }
  const TQCommon::Record* Next() override {
    --fCasesLeft;
    fState = fState * 6364136223846793005U + 1442695040888963407U;
    const double uniform = (static_cast<double>(fState >> 11) + 0.5) / 9007199254740992.0;  // 2^53
    fRecord[0] = std::round(-10.0 * std::log(uniform) * 60.0) / 60.0;  // whole seconds
    return &fRecord;
  }

 private:
  int fCasesLeft;
  std::uint64_t fState = 1;
  TQCommon::Record fRecord{1};
};

int main() {
  BINVarList variables;
  const int minutes = variables.AddContVar("minutes", "", IBINVariable::kAttribute);

  const PrivateDirectory directory;
  EFBINSettings settings;
  settings.SetNumberOfBins(4);
  settings.SetTempDirName(directory.path);  // 8 bytes per case and variable go there

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, variables));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why
  WaitingTimes records(200000);
  if (algorithm->CreateBins(records, nullptr).IsError()) return 1;

  BINAttributeResults bins;
  if (!algorithm->GetBinningResults().GetAttributeCutPoints(minutes, bins).IsOK()) return 1;
  std::cout << "cases: " << static_cast<long>(bins.GetTotalWeight()) << '\n';
  for (const double cut : bins.GetCutPoints()) {
    std::cout << "cut: " << std::lround(cut * 60.0) << " seconds\n";
  }
  for (const double weight : bins.GetCellCounts()) std::cout << "bin: " << weight << " cases\n";
}
