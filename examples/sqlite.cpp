// A host that feeds the rows of an SQLite query, NULL as a missing value, and asks at
// the end whether the query was read to its end.
#include <sqlite3.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "privatedirectory.h"

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

// The first column is a number, the second the text of a category of the list's variable 1.
class QueryRows : public TQCommon::RecordIterator {
 public:
  QueryRows(sqlite3_stmt* query, const BINVarList& variables)
      : fQuery(query),
        fSpecies(dynamic_cast<const BINStringEncoder&>(*variables.GetEncoderAt(1))) {}
  bool HasMore() override {  // asked more than once before a row is taken
    if (fCode == kTaken) fCode = sqlite3_step(fQuery);
    return fCode == SQLITE_ROW;
  }
  const TQCommon::Record* Next() override {
    fCode = kTaken;
    const bool isNull = sqlite3_column_type(fQuery, 0) == SQLITE_NULL;
    fRecord[0] = isNull ? TQMV::gMissingValue : sqlite3_column_double(fQuery, 0);
    const unsigned char* const text = sqlite3_column_text(fQuery, 1);
    fRecord[1] = fSpecies.EncodeConst(text == nullptr ? "" : reinterpret_cast<const char*>(text));
    return &fRecord;
  }
  bool IsComplete() const { return fCode == SQLITE_DONE; }

 private:
  static constexpr int kTaken = -1;  // none of SQLite's codes
  sqlite3_stmt* fQuery;
  const BINStringEncoder& fSpecies;
  int fCode = kTaken;
  TQCommon::Record fRecord{2};
};

int main(int argc, char** argv) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(argc > 1 ? argv[1] : "", &opened, SQLITE_OPEN_READONLY, nullptr);
  const Database database(opened, sqlite3_close);
  if (code != SQLITE_OK) return 1;  // sqlite3_errmsg(database.get()) tells why
  sqlite3_stmt* prepared = nullptr;
  sqlite3_prepare_v2(opened, "SELECT petal, species FROM iris", -1, &prepared, nullptr);
  const Statement query(prepared, sqlite3_finalize);

  BINVarList variables;
  variables.AddContVar("petal", "cm", IBINVariable::kAttribute);
  variables.AddCatVar("species", "", std::vector<std::string>{"setosa", "versicolor", "virginica"},
                      IBINVariable::kTarget);
  const PrivateDirectory directory;
  BINSettings settings;
  settings.SetNumberOfBins(100);  // of pre-binning, should it be wanted; must be set
  settings.SetTempDirName(directory.path);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  if (algorithm == nullptr) return 1;  // factory.GetStatus() tells why
  QueryRows rows(query.get(), variables);
  if (algorithm->CreateBins(rows, nullptr, nullptr).IsError() || !rows.IsComplete()) return 1;
  BINAttributeTargetResults bins;
  if (algorithm->GetBinningResults().GetAttributeTargetCutPoints(0, 1, bins).IsError()) return 1;
  std::cout << "rows: " << bins.GetTotalWeightWithMissing() << '\n';
  for (const double cut : bins.GetCutPoints()) std::cout << "cut: petal <= " << cut << '\n';
}
