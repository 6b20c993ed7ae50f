#include "run/binningrun.h"

#include <memory>
#include <string>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/privatedirectory.h"
#include "base/signals.h"
#include "base/statuswords.h"
#include "base/toolerror.h"
#include "input/csvreader.h"
#include "input/csvsource.h"
#include "input/inputfile.h"
#include "input/numbertext.h"
#include "input/recordfeed.h"
#include "output/outputguard.h"
#include "output/progressline.h"
#include "run/arrivalcheck.h"
#include "run/categoryorder.h"
#include "run/columns.h"
#include "run/resultcollector.h"

namespace TQTool {
namespace {

using TQBinning::TQStatus;

constexpr int kCasesPerReport = 50000;

// What a binning method works with; everything is borrowed.
struct Workplace {
  const Options& options;
  BINVarList& list;
  RecordFeed& records;
  const PrivateDirectory& directory;
  const std::string& inputName;
};

[[noreturn]] void ThrowStatus(const TQStatus& status, const std::string& inputName) {
  switch (status.GetErrorCode()) {
    case TQBinning::kNoCases:
      throw ToolError(kInput, fmt::format("{}: {}", inputName, Describe(status)));
    case TQBinning::kCannotAppend: throw ToolError(kFileSystem, Describe(status));
    default: throw ToolError(kLibraryFailure, Describe(status));
  }
}

// Runs `createBins` with standard output kept clean, then makes sure that the
// cases reached the library and that its status lets the results be used.
template <class CreateBins>
TQStatus RunGuarded(const Workplace& work, const CreateBins& createBins) {
  OutputGuard guard;
  const TQStatus status = createBins();
  const std::string printed = guard.Finish();
  work.records.RethrowError();
  ThrowIfCancelled();
  if (status.IsError()) ThrowStatus(status, work.inputName);
  if (!printed.empty()) {
    throw ToolError(kFileSystem, fmt::format("the library could not read its temporary files "
                                             "({}); is somebody removing files from {}?",
                                             Quoted(printed), work.directory.GetPath()));
  }
  CheckFileSizes(work.directory.GetFileSizes(), work.records.GetFedData().cases, work.list.Size());
  return status;
}

// The settings that both methods have.
template <class Settings>
void SetCommon(Settings& settings, const Workplace& work, SignalQuery& query,
               ProgressLine& progress) {
  settings.SetCancelPointer(&query);
  settings.SetProgressListener(&progress);
  settings.SetNSkippedCasesReports(kCasesPerReport);
  settings.SetRightBorderClosed(work.options.isRightClosed);
  settings.SetTempDirName(work.directory.GetPath());
}

void BinSupervised(const Workplace& work, RunResult& result) {
  SignalQuery query;
  ProgressLine progress(work.records);
  BINSettings settings;
  SetCommon(settings, work, query, progress);
  settings.SetNumDistinctValueThreshold(work.options.prebinThreshold);
  settings.SetNumberOfBins(work.options.prebinBins);
  settings.SetSmallBinDetectionThreshold(work.options.minBinFactor);

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, work.list));
  ThrowIfCancelled();
  if (algorithm == nullptr) ThrowStatus(factory.GetStatus(), work.inputName);
  result.status =
      RunGuarded(work, [&] { return algorithm->CreateBins(work.records, nullptr, nullptr); });

  const FedData& fed = work.records.GetFedData();
  if (fed.withoutTarget == fed.cases) {
    throw ToolError(kInput, fmt::format("{}: the target is missing in every row that counts; "
                                        "expected two categories at least; check {}, "
                                        "--missing-token and --user-missing",
                                        work.inputName, Quoted(work.options.target)));
  }
  const std::vector<std::string> categories = CategoriesOf(work.list);
  const std::vector<std::size_t> order = CategoryOrder(categories);
  for (const std::size_t c : order) result.categories.push_back(categories[c]);
  std::vector<BINAttributeTargetResults> all;
  const TQStatus status = algorithm->GetBinningResults().GetAllCutPoints(all);
  if (status.IsError()) ThrowStatus(status, work.inputName);
  for (const BINAttributeTargetResults& one : all) {
    result.attributes.push_back(CollectResult(one, work.list, order, work.options.prebinThreshold));
  }
}

void BinEqualFrequency(const Workplace& work, RunResult& result) {
  SignalQuery query;
  ProgressLine progress(work.records);
  EFBINSettings settings;
  SetCommon(settings, work, query, progress);
  settings.SetNumberOfBins(work.options.bins);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, work.list));
  ThrowIfCancelled();
  if (algorithm == nullptr) ThrowStatus(factory.GetStatus(), work.inputName);
  result.status = RunGuarded(work, [&] { return algorithm->CreateBins(work.records, nullptr); });

  std::vector<BINAttributeResults> all;
  const TQStatus status = algorithm->GetBinningResults().GetAllCutPoints(all);
  if (status.IsError()) ThrowStatus(status, work.inputName);
  for (const BINAttributeResults& one : all) {
    result.attributes.push_back(CollectResult(one, work.list));
  }
}

}  // namespace

RunResult RunBinning(const Options& options) {
  InputFile file(options.file);
  CsvSource table(
      CsvReader([&file](char* buffer, std::size_t size) { return file.Read(buffer, size); },
                file.GetName(), options.delimiter));
  const MissingTokens missing(options.missingTokens);
  const Columns columns = ChooseColumns(table, options, missing);
  BINVarList list = MakeVarList(table, columns, options);
  RecordFeed records(table, columns, missing, list);
  const PrivateDirectory directory(options.tempDir.empty() ? PrivateDirectory::DefaultBase()
                                                           : options.tempDir);
  const Workplace work = {options, list, records, directory, file.GetName()};

  RunResult result;
  result.options = options;
  result.inputName = file.GetName();
  if (options.method == Method::kSupervised) {
    BinSupervised(work, result);
  } else {
    BinEqualFrequency(work, result);
  }
  result.fed = records.GetFedData();
  CheckArrival(result);
  return result;
}

}  // namespace TQTool
