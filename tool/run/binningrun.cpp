#include "run/binningrun.h"

#include <ctime>
#include <memory>
#include <optional>
#include <string>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include "base/notes.h"
#include "base/plaintext.h"
#include "base/privatedirectory.h"
#include "base/signals.h"
#include "base/statuswords.h"
#include "base/toolerror.h"
#include "base/version.h"
#include "input/numbertext.h"
#include "input/opensource.h"
#include "output/outputguard.h"
#include "run/arrivalcheck.h"
#include "run/casespool.h"
#include "run/categoryorder.h"
#include "run/columns.h"
#include "run/freespace.h"
#include "run/progressline.h"
#include "run/recordfeed.h"
#include "run/resultcollector.h"
#include "run/rowcount.h"
#include "run/weightscale.h"

namespace TQTool {
namespace {

using TQBinning::TQStatus;

constexpr int kCasesPerReport = 50000;

// What a binning method works with; everything is borrowed.
struct Workplace {
  const Options& options;
  const Columns& columns;
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
  settings.SetRightBorderClosed(work.options.settings.isRightClosed);
  settings.SetTempDirName(work.directory.GetPath());
}

// What the feed and the library's list know of a target.
Target MakeTarget(const Workplace& work, std::size_t index, const std::vector<std::size_t>& order) {
  const int variable = TargetVariable(index);
  const FedData& fed = work.records.GetFedData();
  Target target;
  target.name = work.list.GetVarAt(variable)->GetVariableName();
  target.missingCases = fed.withoutTarget[index];
  target.missing = MissingRuleOf(target.name, work.options.userMissing);
  if (target.missingCases == fed.cases) {
    throw ToolError(kInput, fmt::format("{}: the target is missing in every row that counts; "
                                        "expected two categories at least; check {}, "
                                        "--missing-token and --user-missing",
                                        work.inputName, Quoted(target.name)));
  }
  const std::vector<std::string> categories = CategoriesOf(work.list, variable);
  for (const std::size_t c : order) target.categories.push_back(categories[c]);
  return target;
}

// Adds the targets and, pair by pair, what came of them to the model.
void CollectPairs(const Workplace& work, const BINOutput& results, Model& model) {
  std::vector<std::vector<std::size_t>> orders;
  for (std::size_t t = 0; t < work.columns.targets.size(); ++t) {
    orders.push_back(CategoryOrder(CategoriesOf(work.list, TargetVariable(t))));
    model.targets.push_back(MakeTarget(work, t, orders[t]));
  }
  std::vector<BINAttributeTargetResults> all;  // in the order of the pairs
  const TQStatus status = results.GetAllCutPoints(all);
  if (status.IsError()) ThrowStatus(status, work.inputName);
  for (const BINAttributeTargetResults& one : all) {
    const auto target = static_cast<std::size_t>(one.GetTargetIndex());
    model.attributes.push_back(
        CollectResult(one, work.list, orders.at(target), work.options.settings.prebinThreshold));
    model.attributes.back().target = target;
  }
}

void BinSupervised(const Workplace& work, Model& model) {
  SignalQuery query;
  ProgressLine progress(work.records, work.options.progress);
  BINSettings settings;
  SetCommon(settings, work, query, progress);
  settings.SetNumDistinctValueThreshold(work.options.settings.prebinThreshold);
  settings.SetNumberOfBins(work.options.settings.prebinBins);
  settings.SetSmallBinDetectionThreshold(work.options.settings.minBinFactor);

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, work.list));
  ThrowIfCancelled();
  if (algorithm == nullptr) ThrowStatus(factory.GetStatus(), work.inputName);
  std::vector<int> attributes;
  std::vector<int> targets;
  for (const ColumnPair& pair : work.columns.pairs) {
    attributes.push_back(AttributeVariable(work.columns, pair.attribute));
    targets.push_back(TargetVariable(pair.target.value()));
  }
  model.status =
      RunGuarded(work, [&] { return algorithm->CreateBins(work.records, &attributes, &targets); });
  CollectPairs(work, algorithm->GetBinningResults(), model);
}

void BinEqualFrequency(const Workplace& work, Model& model) {
  SignalQuery query;
  ProgressLine progress(work.records, work.options.progress);
  EFBINSettings settings;
  SetCommon(settings, work, query, progress);
  settings.SetNumberOfBins(work.options.settings.bins);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, work.list));
  ThrowIfCancelled();
  if (algorithm == nullptr) ThrowStatus(factory.GetStatus(), work.inputName);
  model.status = RunGuarded(work, [&] { return algorithm->CreateBins(work.records, nullptr); });

  std::vector<BINAttributeResults> all;
  const TQStatus status = algorithm->GetBinningResults().GetAllCutPoints(all);
  if (status.IsError()) ThrowStatus(status, work.inputName);
  for (const BINAttributeResults& one : all) {
    model.attributes.push_back(CollectResult(one, work.list));
  }
}

// Tells what was read and counted.
InputSummary Summarize(const FedData& fed, const Source& source) {
  InputSummary input;
  input.names = source.GetInputNames();
  input.rows = fed.rows;
  input.cases = fed.cases;
  input.weight = fed.weight;
  input.droppedWeightMissing = fed.droppedWeightMissing;
  input.droppedWeightNotPositive = fed.droppedWeightNotPositive;
  input.droppedWeightRoundedAway = fed.droppedWeightRoundedAway;
  return input;
}

// Warns when the weights look like those of a sample: the library counts a row as often
// as its weight says, so they would make every difference look surer than it is.
void NoteLargeWeights(const Settings& settings, const FedData& fed) {
  constexpr double kSuspicious = 10.0;  // average weight per case
  const auto cases = static_cast<double>(fed.cases);
  if (settings.weight.empty() || !(fed.weight > kSuspicious * cases)) return;
  PrintNote(
      fmt::format("the weights of {} add up to {} for {} rows; they count like repeated rows, so "
                  "a sampling weight gives too many cut points; if it is one, take "
                  "--weight-scale mean",
                  Quoted(settings.weight), fed.weight, fed.cases));
}

// Without weights every case is a row.
void TakeWeightsForRows(BinnedAttribute& attribute) {
  attribute.valid.rows = attribute.valid.weight;
  attribute.total.rows = attribute.total.weight;
  for (Bin& bin : attribute.bins) {
    bin.count.rows = bin.count.weight;
    for (Count& count : bin.categories) count.rows = count.weight;
  }
}

// Adds to the attributes what the options, not the library, tell about them.
void Complete(const Options& options, std::vector<BinnedAttribute>& attributes) {
  for (BinnedAttribute& attribute : attributes) {
    attribute.isRightClosed = options.settings.isRightClosed;
    attribute.missing = MissingRuleOf(attribute.name, options.userMissing);
    if (options.settings.weight.empty()) TakeWeightsForRows(attribute);
  }
}

}  // namespace

Model RunBinning(const Options& options) {
  const std::unique_ptr<Source> source = OpenSource(options.input);
  Source& table = *source;
  const MissingTokens missing(options.settings.missingTokens);
  const Columns columns = ChooseColumns(table, options, missing);
  BINVarList list = MakeVarList(table, columns, options);
  const PrivateDirectory directory(options.tempDir.empty() ? PrivateDirectory::DefaultBase()
                                                           : options.tempDir);
  const bool isWeighted = columns.weight.has_value();
  CheckFreeSpace(directory.GetPath(), table.EstimateRows(),
                 static_cast<std::size_t>(list.Size()) * (isWeighted ? 2 : 1));
  std::optional<CaseSpool> cases;  // where rows and weights differ
  if (isWeighted) cases.emplace(directory.GetPath(), list.Size());
  RecordFeed records(table, columns, missing, list, FindWeightRule(options, missing));
  if (cases.has_value()) records.KeepCasesIn(*cases);
  const Workplace work = {options, columns, list, records, directory, table.GetName()};

  Model model;
  model.toolVersion = kVersion;
  if (options.hasTimestamp) {
    model.created = fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(std::time(nullptr)));
  }
  model.method = options.method;
  model.settings = options.settings;
  model.settings.weightMissing = MissingRuleOf(options.settings.weight, options.userMissing);
  if (options.method == Method::kSupervised) {
    BinSupervised(work, model);
  } else {
    BinEqualFrequency(work, model);
  }
  model.input = Summarize(records.GetFedData(), table);
  CheckArrival(model.attributes, records.GetFedData());
  NoteLargeWeights(options.settings, records.GetFedData());
  Complete(options, model.attributes);
  if (cases.has_value()) CountRows(*cases, columns, list, model.attributes);
  return model;
}

}  // namespace TQTool
