// Several targets in one run: the records are read once, each pair of an attribute and
// a target has bins and a status of its own, and further pairs cost no further reading.
#include <iostream>
#include <memory>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

// Field 0: heat; 1: whether the part broke; 2: its colour, one of three; 3: noise.
class Parts : public TQCommon::RecordIterator {
 public:
  bool HasMore() override { return fNext < 300; }
  const TQCommon::Record* Next() override {
    const int heat = fNext % 30;
    const int colour = heat / 10;
    fRecord[0] = heat;
    fRecord[1] = heat > 20 ? 1 : 0;
    fRecord[2] = colour;
    fRecord[3] = fNext * 7 % 11;
    ++fNext;
    return &fRecord;
  }

 private:
  int fNext = 0;
  TQCommon::Record fRecord{4};
};

void Print(const BINVarList& variables, const BINOutput& output) {
  std::vector<BINAttributeTargetResults> pairs;
  if (output.GetAllCutPoints(pairs).IsError()) return;
  for (const BINAttributeTargetResults& pair : pairs) {
    std::cout << variables.GetVarAt(pair.GetAttributeIndex())->GetVariableName() << " by "
              << variables.GetVarAt(pair.GetTargetIndex())->GetVariableName() << ": status "
              << pair.GetStatus().GetErrorCode() << ", cuts";
    for (const double cut : pair.GetCutPoints()) std::cout << ' ' << cut;
    std::cout << '\n';
  }
}

int main() {
  constexpr auto kNumeric = IBINVariable::kNumericCategorical;
  BINVarList variables;
  const int heat = variables.AddContVar("heat", "", IBINVariable::kAttribute);
  const int broken = variables.AddCatVar("broken", "", 2, kNumeric, IBINVariable::kTarget);
  const int colour = variables.AddCatVar("colour", "", 3, kNumeric, IBINVariable::kAttribute);
  const int noise = variables.AddContVar("noise", "", IBINVariable::kAttribute);

  const PrivateDirectory directory;
  BINSettings settings;
  settings.SetNumberOfBins(100);  // of pre-binning, should it be wanted; must be set
  settings.SetTempDirName(directory.path);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why

  Parts records;
  const std::vector<int> attributes = {heat, heat};
  const std::vector<int> targets = {broken, colour};
  if (algorithm->CreateBins(records, &attributes, &targets).IsError()) return 1;
  const std::vector<int> furtherAttributes = {noise};
  const std::vector<int> furtherTargets = {broken};
  if (algorithm->CreateBins(records, &furtherAttributes, &furtherTargets).IsError()) return 1;
  Print(variables, algorithm->GetBinningResults());
}
