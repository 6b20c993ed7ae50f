#include "run/weightscale.h"

#include <cmath>
#include <memory>
#include <string>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/signals.h"
#include "base/toolerror.h"
#include "input/opensource.h"
#include "run/columns.h"

namespace TQTool {
namespace {

// The mean of the weights that are known and above zero; 1 when there is none.
double MeanWeight(const BinningOptions& options, const MissingTokens& missing,
                  const WeightRule& rule) {
  if (!CanBeReadTwice(options.input)) {
    throw ToolError(kUsage,
                    "--weight-scale mean has to read the input twice, which standard input and "
                    "pipes do not allow; save the data in a file, or give a number");
  }
  BinningOptions weightOnly;
  weightOnly.input = options.input;
  weightOnly.input.isVerbose = false;  // the run itself tells what it finds
  weightOnly.settings.weightRounding = "none";
  const std::unique_ptr<Source> table = OpenSource(weightOnly.input);
  Columns columns;
  columns.weight = table->GetColumn(options.settings.weight);
  BINVarList list = MakeVarList(*table, columns, weightOnly);
  RecordFeed records(*table, columns, missing, list, rule);
  while (records.HasMore()) {
    records.Next();
    ThrowIfCancelled();
  }
  records.RethrowError();
  const FedData& fed = records.GetFedData();
  if (!std::isfinite(fed.weight)) {
    table->FailAtHeader(fmt::format(
        "the weights of {} add up to more than a double holds, so that they have no mean; scale "
        "them by a number, as in --weight-scale 1e-9",
        Quoted(options.settings.weight)));
  }
  return fed.cases == 0 ? 1.0 : fed.weight / static_cast<double>(fed.cases);
}

}  // namespace

WeightRule FindWeightRule(const BinningOptions& options, const MissingTokens& missing) {
  const Settings& settings = options.settings;
  WeightRule rule;
  if (settings.weight.empty()) return rule;
  rule.missing = options.MissingRuleOf(settings.weight);
  if (settings.weightScale == kMeanScale) {
    rule.divisor = MeanWeight(options, missing, rule);
  } else if (!settings.weightScale.empty()) {
    ReadNumber(settings.weightScale, &rule.factor);
  }
  return rule;
}

}  // namespace TQTool
