// Rows that stand for several cases each, and values that mean "not known": a frequency
// weight, and user-missing codes of an attribute.
#include <array>
#include <cstddef>
#include <iostream>
#include <memory>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

using Row = std::array<double, 3>;  // hours, late (0 or 1), how often the row occurred

class Rows : public TQCommon::RecordIterator {
 public:
  explicit Rows(const std::vector<Row>& rows) : fRows(rows) {}
  bool HasMore() override { return fNext < fRows.size(); }
  const TQCommon::Record* Next() override {
    for (int field = 0; field < 3; ++field) {
      fRecord[field] = fRows[fNext][static_cast<std::size_t>(field)];
    }
    ++fNext;
    return &fRecord;
  }

 private:
  const std::vector<Row>& fRows;
  std::size_t fNext = 0;
  TQCommon::Record fRecord{3};
};

int main() {
  const std::vector<Row> rows = {
      {10, 0, 40}, {20, 0, 35}, {30, 1, 30}, {40, 1, 25},
      {99, 1, 12}, {-1, 0, 8},  {20, 1, 0},  {TQMV::gMissingValue, 0, 5}};
  BINVarList variables;
  const int hours = variables.AddContVar("hours", "", IBINVariable::kAttribute);
  const int late =
      variables.AddCatVar("late", "", 2, IBINVariable::kNumericCategorical, IBINVariable::kTarget);
  variables.AddWeightVar("times", "", IBINVariable::kRoundToClosest);
  variables.AddDiscreteUserMissing(hours, 99, "not asked");
  variables.SetMissingInterval(hours, -9, -1);  // the codes of several refusals

  const PrivateDirectory directory;
  BINSettings settings;
  settings.SetNumberOfBins(100);  // of pre-binning, should it be wanted; must be set
  settings.SetTempDirName(directory.path);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why
  Rows records(rows);
  if (algorithm->CreateBins(records, nullptr, nullptr).IsError()) return 1;

  BINAttributeTargetResults bins;
  if (!algorithm->GetBinningResults().GetAttributeTargetCutPoints(hours, late, bins).IsOK())
    return 1;
  std::cout << "cases: " << bins.GetTotalWeight() << ", with those without hours "
            << bins.GetTotalWeightWithMissing() << '\n';
  for (const double cut : bins.GetCutPoints()) std::cout << "cut: hours <= " << cut << '\n';
}
