// Supervised binning of rows that the program holds in memory: where does age part
// those who paid from those who did not?
#include <cstddef>
#include <iostream>
#include <memory>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

struct Customer {
  double age;
  bool paid;
};

// Hands the customers over, one record each: field 0 is age, field 1 the code of paid.
class Customers : public TQCommon::RecordIterator {
 public:
  explicit Customers(const std::vector<Customer>& rows) : fRows(rows) {}
  bool HasMore() override { return fNext < fRows.size(); }
  const TQCommon::Record* Next() override {
    const Customer& row = fRows[fNext++];
    fRecord[0] = row.age;
    fRecord[1] = row.paid ? 1.0 : 0.0;
    return &fRecord;
  }

 private:
  const std::vector<Customer>& fRows;
  std::size_t fNext = 0;
  TQCommon::Record fRecord{2};
};

int main() {
  std::vector<Customer> rows;
  rows.reserve(60);
  for (int i = 0; i < 60; ++i) rows.push_back({20.0 + i % 20, i % 20 >= 12 || i == 3});

  BINVarList variables;
  const int age = variables.AddContVar("age", "years", IBINVariable::kAttribute);
  const int paid =
      variables.AddCatVar("paid", "", 2, IBINVariable::kNumericCategorical, IBINVariable::kTarget);
  const PrivateDirectory directory;
  BINSettings settings;
  settings.SetNumberOfBins(100);  // of pre-binning, should it be wanted; must be set
  settings.SetTempDirName(directory.path);

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why
  Customers records(rows);
  if (algorithm->CreateBins(records, nullptr, nullptr).IsError()) return 1;

  BINAttributeTargetResults bins;
  if (!algorithm->GetBinningResults().GetAttributeTargetCutPoints(age, paid, bins).IsOK()) return 1;
  for (const double cut : bins.GetCutPoints()) std::cout << "cut: age <= " << cut << '\n';
  for (const std::vector<double>& bin : bins.GetCellCounts()) {
    std::cout << "bin: " << bin[0] << " customers, " << bin[2] << " paid\n";
  }
}
