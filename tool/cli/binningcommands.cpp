#include <limits>
#include <memory>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "cli/addcommands.h"
#include "cli/inputarguments.h"
#include "cli/usermissing.h"
#include "input/missingtokens.h"
#include "input/numbertext.h"

namespace TQTool {
namespace {

constexpr int kMaxBins = 1000000;  // more than anybody reads
constexpr int kMaxJobs = 1024;     // threads
constexpr int kMaxInt = std::numeric_limits<int>::max();

// What the command line holds before it is looked at more closely.
struct RawOptions {
  std::vector<std::string> userMissing;
  std::vector<std::string> pairs;
  std::string weightRounding;  // empty for the default
};

// What is wrong with the text of a factor; nothing when it is a number from 0 to 1.
std::string CheckFactor(const std::string& text) {
  double factor = 0.0;
  const bool isNumber = ReadNumber(text, &factor) == NumberText::kNumber;
  if (isNumber && factor >= 0.0 && factor <= 1.0) return "";
  return fmt::format("{} is no number from 0 to 1", Quoted(text));
}

// What is wrong with the text of a weight's scale.
std::string CheckScale(const std::string& text) {
  double factor = 0.0;
  const bool isNumber = ReadNumber(text, &factor) == NumberText::kNumber;
  if (text == kMeanScale || (isNumber && factor > 0.0)) return "";
  return fmt::format("{} is neither mean nor a number above 0", Quoted(text));
}

void AddWeightOptions(CLI::App& command, BinningOptions& options, RawOptions& raw) {
  CLI::Option* const weight =
      command
          .add_option("-w,--weight", options.settings.weight,
                      "frequency weight: a row counts this often; a row whose weight is missing "
                      "or not above zero is left out")
          ->type_name("COLUMN");
  AddChoice<std::string>(command, "--weight-rounding", raw.weightRounding,
                         {{"closest", "closest"}, {"down", "down"}, {"none", "none"}},
                         "how weights are made whole (default: closest, but none with "
                         "--weight-scale)")
      ->needs(weight);
  command
      .add_option("--weight-scale", options.settings.weightScale,
                  "a number that multiplies weights before they are rounded, or mean: divide them "
                  "by their mean, so that a sampling weight counts as many cases as there are "
                  "rows; mean reads the input twice, so it does not go with standard input")
      ->check(CheckScale)
      ->needs(weight)
      ->type_name("SCALE");
}

void AddCommonOptions(CLI::App& command, BinningOptions& options, RawOptions& raw) {
  AddInputArguments(command, options.input);
  command
      .add_option("-a,--attribute", options.attributes,
                  "column to bin; repeat it, or give a comma list (default: every column whose "
                  "first rows hold numbers, but targets and weight)")
      ->allow_extra_args(false)
      ->type_name("COLUMN");
  AddWeightOptions(command, options, raw);
  AddChoice<bool>(command, "--closed", options.settings.isRightClosed,
                  {{"right", true}, {"left", false}},
                  "the side on which a bin contains its cut point: right (default) or left");
  command
      .add_option("--user-missing", raw.userMissing,
                  "values of one column to take for missing: COL=9,99 or a range COL=90..99, "
                  "COL=..0, COL=90.. (ends included); may be repeated")
      ->allow_extra_args(false)
      ->type_name("COL=VALUES");
  command
      .add_option("--missing-token", options.settings.missingTokens,
                  "text that stands for a missing value in every column; may be repeated, and "
                  "then replaces the default: '' (an empty field), NA, N/A, NaN, nan, NULL, null, "
                  "? and .")
      ->allow_extra_args(false)
      ->type_name("TEXT");
  command
      .add_option("--temp-dir", options.tempDir,
                  "where the run's private temporary directory is made (default: TMPDIR, or "
                  "/tmp); needs 8 bytes per row and column used, twice that with --weight")
      ->type_name("DIR");
  AddShowingOptions(command, options.output);
  AddChoice<ProgressKind>(
      command, "--progress", options.progress,
      {{"auto", ProgressKind::kAuto},
       {"bar", ProgressKind::kBar},
       {"json", ProgressKind::kJson},
       {"none", ProgressKind::kNone}},
      "how far the run is, on standard error: auto (default: a bar on a terminal), bar, json: "
      "lines for programs, or none");
  command.add_flag("--strict", options.isStrict,
                   "end with 1 when a column was not cut as asked; its status tells why");
  command.add_flag("--timestamp", options.hasTimestamp,
                   "let the model file say when it was made; without it, equal runs write equal "
                   "files");
}

void AddSupervisedOptions(CLI::App& command, BinningOptions& options, RawOptions& raw) {
  command
      .add_option("-t,--target", options.targets,
                  "the column whose categories (2 to 256) the bins are to separate; repeat it to "
                  "bin every column against each of several targets")
      ->allow_extra_args(false)
      ->type_name("COLUMN");
  command
      .add_option("--pair", raw.pairs,
                  "instead of --target and --attribute: a column to bin and its target; repeat it "
                  "for more pairs (the last colon parts the two)")
      ->allow_extra_args(false)
      ->type_name("COLUMN:TARGET");
  CLI::Option* const threshold =
      command
          .add_option("--prebin-threshold", options.settings.prebinThreshold,
                      "first cut a column of more than N distinct values into equal-frequency "
                      "bins, for speed (default: 0, never)")
          ->check(CLI::Range(0, kMaxInt).description(""))
          ->type_name("N");
  command
      .add_option("--prebin-bins", options.settings.prebinBins,
                  fmt::format("how many equal-frequency bins that makes (default: {})",
                              options.settings.prebinBins))
      ->check(CLI::Range(2, kMaxBins).description(""))
      ->needs(threshold)
      ->type_name("N");
  command
      .add_option("--min-bin-factor", options.settings.minBinFactor,
                  "merge an inner bin that weighs less than F times its lighter neighbour, F "
                  "from 0 to 1 (default: 0, never)")
      ->check(CheckFactor)
      ->type_name("F");
  command
      .add_option("-j,--jobs", options.jobs,
                  "how many threads bin the columns, 0 for as many as there are processors "
                  "(default: 1); the result is the same. For more than one the rows are held in "
                  "memory; when they fill a quarter of it, the run goes on with one")
      ->check(CLI::Range(0, kMaxJobs).description(""))
      ->type_name("N");
}

void AddEqualFrequencyOptions(CLI::App& command, BinningOptions& options) {
  command
      .add_option("-b,--bins", options.settings.bins,
                  "how many bins; fewer come out where equal values would have to be parted")
      ->required()
      ->check(CLI::Range(2, kMaxBins).description(""))
      ->type_name("N");
}

// Reads a --pair.  Throws ToolError (kUsage).
AttributeTarget ReadPair(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  AttributeTarget pair;
  if (colon != std::string::npos) {
    pair.attribute = TrimBlanks(std::string_view(text).substr(0, colon));
    pair.target = TrimBlanks(std::string_view(text).substr(colon + 1));
  }
  if (!pair.attribute.empty() && !pair.target.empty()) return pair;
  throw ToolError(kUsage, fmt::format("--pair: {} does not name two columns; expected a column to "
                                      "bin, a colon and its target, as in age:income",
                                      Quoted(text)));
}

// The names of all targets.  Throws for pairs and targets together, and for neither.
std::vector<std::string> FindTargets(const BinningOptions& options) {
  std::vector<std::string> targets = options.targets;
  for (const AttributeTarget& pair : options.pairs) targets.push_back(pair.target);
  if (options.method == Method::kSupervised && targets.empty()) {
    throw CLI::RequiredError("--target");
  }
  if (!options.pairs.empty() && !(options.targets.empty() && options.attributes.empty())) {
    throw ToolError(kUsage,
                    "--pair stands instead of --target and --attribute; leave these out, or name "
                    "no pair to bin every column against every target");
  }
  return targets;
}

// Completes the options by what was given as text; throws for what they cannot mean.
void Interpret(const RawOptions& raw, BinningOptions& options) {
  CheckInputArguments(options.input);
  if (options.jobs != 1 && options.settings.prebinThreshold != 0) {
    // The library may look at what the column before left behind when it cuts at percentiles.
    throw ToolError(kUsage,
                    "--jobs does not go with --prebin-threshold, which takes one column after the "
                    "other; leave one of them out");
  }
  options.settings.weightRounding = raw.weightRounding;
  if (raw.weightRounding.empty()) {
    options.settings.weightRounding = options.settings.weightScale.empty() ? "closest" : "none";
  }
  if (options.settings.missingTokens.empty())
    options.settings.missingTokens = MissingTokens::Default();
  for (const std::string& text : options.settings.missingTokens) {
    RequireUtf8("--missing-token", text);
  }
  for (const std::string& text : raw.pairs) options.pairs.push_back(ReadPair(text));
  const std::vector<std::string> targets = FindTargets(options);
  for (const std::string& option : raw.userMissing) {
    RequireUtf8("--user-missing", option);
    AddUserMissing(option, targets, options.userMissing);
  }
}

// Adds one method; its options live as long as the parser's reference to them.
void AddMethod(CLI::App& app, Method method, const Commands& commands, Action& action) {
  const bool isSupervised = method == Method::kSupervised;
  CLI::App& command = AddCommand(
      app, NameOf(method),
      isSupervised ? "Bins that separate the categories of a target: splits of least entropy."
                   : "Bins that hold about equal numbers of rows, or equal weight.");
  command.alias(isSupervised ? "mdlp" : "ef");
  const auto options = std::make_shared<BinningOptions>();
  const auto raw = std::make_shared<RawOptions>();
  options->method = method;
  if (isSupervised) {
    AddSupervisedOptions(command, *options, *raw);
  } else {
    AddEqualFrequencyOptions(command, *options);
  }
  AddCommonOptions(command, *options, *raw);
  command.callback([options, raw, &commands, &action] {
    Interpret(*raw, *options);
    action = [options, &commands] { return commands.bin(*options); };
  });
}

}  // namespace

void AddBinningCommands(CLI::App& app, const Commands& commands, Action& action) {
  AddMethod(app, Method::kSupervised, commands, action);
  AddMethod(app, Method::kEqualFrequency, commands, action);
}

}  // namespace TQTool
