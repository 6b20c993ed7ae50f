// A data set in two parts, each with its own description: when the two lists agree, the
// parts are binned as one; when not, the first difference is named.
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

BINVarList Describe(const std::string& measure) {
  BINVarList variables;
  variables.AddContVar(measure, "", IBINVariable::kAttribute);
  variables.AddCatVar("ill", "", std::vector<std::string>{"no", "yes"}, IBINVariable::kTarget);
  return variables;
}

using Rows = std::vector<std::pair<double, std::string>>;

// The rows of several parts, one part after the other, the answers as codes of the list.
class Parts : public TQCommon::RecordIterator {
 public:
  Parts(const BINVarList& variables, const std::vector<Rows>& parts)
      : fAnswers(dynamic_cast<const BINStringEncoder&>(*variables.GetEncoderAt(1))) {
    for (const Rows& part : parts) fRows.insert(fRows.end(), part.begin(), part.end());
  }
  bool HasMore() override { return fNext < fRows.size(); }
  const TQCommon::Record* Next() override {
    fRecord[0] = fRows[fNext].first;
    fRecord[1] = fAnswers.EncodeConst(fRows[fNext++].second);
    return &fRecord;
  }

 private:
  const BINStringEncoder& fAnswers;
  Rows fRows;
  std::size_t fNext = 0;
  TQCommon::Record fRecord{2};
};

int main() {
  BINVarList north = Describe("fever");
  int difference = 0;
  if (!north.CanMergeWith(Describe("pulse"), difference)) {
    std::cout << "west differs: no " << north.GetVarAt(difference)->GetVariableName() << '\n';
  }
  if (!north.CanMergeWith(Describe("fever"), difference)) return 1;
  std::cout << "south can be merged\n";
  const Rows northRows(10, {36.8, "no"});
  const Rows southRows(10, {39.1, "yes"});

  const PrivateDirectory directory;
  BINSettings settings;
  settings.SetNumberOfBins(100);  // of pre-binning, should it be wanted; must be set
  settings.SetTempDirName(directory.path);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, north));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why
  Parts records(north, {northRows, southRows});
  if (algorithm->CreateBins(records, nullptr, nullptr).IsError()) return 1;
  BINAttributeTargetResults bins;
  if (algorithm->GetBinningResults().GetAttributeTargetCutPoints(0, 1, bins).IsError()) return 1;
  for (const double cut : bins.GetCutPoints()) std::cout << "cut: fever <= " << cut << '\n';
}
