#include "run/binningrun.h"

#include <cstddef>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include "base/notes.h"
#include "base/plaintext.h"
#include "base/privatedirectory.h"
#include "base/toolerror.h"
#include "base/version.h"
#include "input/missingtokens.h"
#include "input/opensource.h"
#include "output/outputguard.h"
#include "run/arrivalcheck.h"
#include "run/casespool.h"
#include "run/categoryorder.h"
#include "run/columns.h"
#include "run/freespace.h"
#include "run/jobs.h"
#include "run/progressline.h"
#include "run/recordfeed.h"
#include "run/resultcollector.h"
#include "run/rowcount.h"
#include "run/weightscale.h"

namespace TQTool {
namespace {

// Runs the library with standard output kept clean, then makes sure that the cases
// reached it.
std::vector<LibraryResult> RunGuarded(const BinningTask& task) {
  ProgressLine progress(task.feed, task.options.progress);
  OutputGuard guard;
  std::vector<LibraryResult> results = RunJobs(task, progress);
  const std::string printed = guard.Finish();
  if (!printed.empty()) {
    throw ToolError(kFileSystem, fmt::format("the library could not read its temporary files "
                                             "({}); is somebody removing files from {}?",
                                             Quoted(printed), task.directory.GetPath()));
  }
  for (const LibraryResult& result : results) {
    CheckFileSizes(result.fileSizes, task.feed.GetFedData().cases, result.numVariables);
  }
  return results;
}

// What the feed and the library's list know of a target.
Target MakeTarget(const BinningTask& task, std::size_t index) {
  const int variable = TargetVariable(index);
  const FedData& fed = task.feed.GetFedData();
  Target target;
  target.name = task.list.GetVarAt(variable)->GetVariableName();
  target.missingCases = fed.withoutTarget[index];
  target.missing = task.options.MissingRuleOf(target.name);
  if (target.missingCases == fed.cases) {
    throw ToolError(kInput, fmt::format("{}: the target is missing in every row that counts; "
                                        "expected two categories at least; check {}, "
                                        "--missing-token and --user-missing",
                                        task.inputName, Quoted(target.name)));
  }
  const std::vector<std::string> categories = CategoriesOf(task.list, variable);
  for (const std::size_t c : CategoryOrder(categories)) target.categories.push_back(categories[c]);
  return target;
}

// Adds the targets and, pair by pair, what comes of them to the model.
void BinPairs(const BinningTask& task, Model& model) {
  model.attributes.resize(task.columns.pairs.size());
  for (LibraryResult& result : RunGuarded(task)) {
    if (!result.status.IsOK()) model.status = result.status;
    for (std::size_t i = 0; i < result.pairs.size(); ++i) {
      model.attributes[result.pairs[i]] = std::move(result.attributes.at(i));
    }
  }
  for (std::size_t t = 0; t < task.columns.targets.size(); ++t) {
    model.targets.push_back(MakeTarget(task, t));
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
void Complete(const BinningOptions& options, std::vector<BinnedAttribute>& attributes) {
  for (BinnedAttribute& attribute : attributes) {
    attribute.isRightClosed = options.settings.isRightClosed;
    attribute.missing = options.MissingRuleOf(attribute.name);
    if (options.settings.weight.empty()) TakeWeightsForRows(attribute);
  }
}

}  // namespace

Model RunBinning(const BinningOptions& options) {
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
  const WeightRule weightRule = FindWeightRule(options, missing);
  RecordFeed records(table, columns, missing, list, weightRule);
  if (cases.has_value()) records.KeepCasesIn(*cases);

  Model model;
  model.toolVersion = kVersion;
  if (options.hasTimestamp) {
    model.created = fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(std::time(nullptr)));
  }
  model.method = options.method;
  model.settings = options.settings;
  model.settings.weightMissing = options.MissingRuleOf(options.settings.weight);
  if (options.settings.weightScale == kMeanScale) model.settings.weightDivisor = weightRule.divisor;
  BinPairs({options, columns, list, records, directory, table.GetName()}, model);
  model.input = Summarize(records.GetFedData(), table);
  CheckArrival(model.attributes, records.GetFedData());
  NoteLargeWeights(options.settings, records.GetFedData());
  Complete(options, model.attributes);
  if (cases.has_value()) CountRows(*cases, columns, list, model.attributes);
  return model;
}

}  // namespace TQTool
