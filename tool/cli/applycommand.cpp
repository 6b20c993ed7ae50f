#include <memory>

#include "cli/addcommands.h"
#include "cli/inputarguments.h"

namespace TQTool {
namespace {

void AddReadingOptions(CLI::App& command, ApplyOptions& options) {
  AddModelArgument(command, options.model, "model file that tqbin wrote");
  AddInputArguments(command, options.input);
  command
      .add_option("-a,--attribute", options.attributes,
                  "column to bin; may be repeated (default: every column of the model)")
      ->allow_extra_args(false)
      ->type_name("COLUMN");
  command
      .add_option("--missing-token", options.missingTokens,
                  "text that stands for a missing value; may be repeated, and then replaces those "
                  "of the model")
      ->allow_extra_args(false)
      ->type_name("TEXT");
  AddChoice<OddValue>(
      command, "--out-of-range", options.outOfRange,
      {{"bin", OddValue::kBin}, {"missing", OddValue::kMissing}, {"refuse", OddValue::kRefuse}},
      "a value beyond those that the model was made of: into the first or last "
      "bin (bin, default), taken for missing, or an error (refuse)");
  AddChoice<OddValue>(command, "--not-number", options.notNumber,
                      {{"missing", OddValue::kMissing}, {"refuse", OddValue::kRefuse}},
                      "a text that is no number: taken for missing, or an error (refuse, default)");
}

void AddWritingOptions(CLI::App& command, ApplyOptions& options) {
  AddBinNameOptions(command, options.binText, options.suffix);
  command
      .add_option("--missing-text", options.missingText,
                  "the bin of a missing value (default: an empty field, null in JSON)")
      ->type_name("TEXT");
  command.add_flag("--bins-only", options.areBinsOnly, "leave the columns of the data out");
  AddChoice<RowFormat>(
      command, "--format", options.format,
      {{"csv", RowFormat::kCsv}, {"tsv", RowFormat::kTsv}, {"ndjson", RowFormat::kNdjson}},
      "csv (default), tsv, or ndjson: an object of texts per line");
  AddSpreadsheetOption(command, options.isSpreadsheetSafe);
  AddOutputOption(command, options.output);
}

}  // namespace

void AddApplyCommand(CLI::App& app, const Commands& commands, Action& action) {
  CLI::App& command =
      AddCommand(app, "apply", "Writes data with a column of bins per column of a model.");
  const auto options = std::make_shared<ApplyOptions>();
  AddReadingOptions(command, *options);
  AddWritingOptions(command, *options);
  command.callback([options, &commands, &action] {
    CheckInputArguments(options->input);
    action = [options, &commands] { return commands.apply(*options); };
  });
}

}  // namespace TQTool
