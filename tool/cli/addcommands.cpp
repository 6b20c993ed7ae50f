#include "cli/addcommands.h"

#include "base/notes.h"
#include "base/safemode.h"
#include "cli/configfile.h"

namespace TQTool {

CLI::App& AddCommand(CLI::App& app, const std::string& name, const std::string& description) {
  CLI::App& command = *app.add_subcommand(name, description);
  // Before the file of options is opened, and therefore none of them.
  command
      .add_flag_callback("--safe", EnterSafeMode,
                         "read no file but those named here, and those only if they are "
                         "regular files and no symbolic links")
      ->configurable(false);
  AddConfigOption(command);
  command.add_flag_callback("-q,--quiet", SilenceNotes,
                            "print errors only, neither notes nor progress, on standard error");
  return command;
}

void AddModelArgument(CLI::App& command, std::string& model, const std::string& help) {
  const auto checkPath = [](const std::string& path) -> std::string {
    return path.empty() ? "the path is empty; expected a model file" : "";
  };
  command.add_option("MODEL", model, help)->required()->check(checkPath)->type_name("");
}

void AddOutputOption(CLI::App& command, std::string& output) {
  command
      .add_option("-o,--output", output,
                  "file to write, complete or not at all (default: -, standard output)")
      ->type_name("FILE");
}

void AddSpreadsheetOption(CLI::App& command, bool& isSpreadsheetSafe) {
  command.add_flag("--spreadsheet-safe", isSpreadsheetSafe,
                   "CSV: put an apostrophe before a text that a spreadsheet would take for a "
                   "formula");
}

void AddShowingOptions(CLI::App& command, OutputOptions& options) {
  AddOutputOption(command, options.path);
  AddChoice<OutputFormat>(command, "--format", options.format,
                          {{"table", OutputFormat::kTable},
                           {"json", OutputFormat::kJson},
                           {"ndjson", OutputFormat::kNdjson},
                           {"csv", OutputFormat::kCsv},
                           {"markdown", OutputFormat::kMarkdown}},
                          "table (default); json: the model file; ndjson: a line of JSON per "
                          "column; csv: a row per bin; or markdown");
  AddChoice<ColorUse>(
      command, "--color", options.color,
      {{"auto", ColorUse::kAuto}, {"always", ColorUse::kAlways}, {"never", ColorUse::kNever}},
      "colours in a table: auto (default: on a terminal, unless NO_COLOR is set), always or never");
  AddSpreadsheetOption(command, options.isSpreadsheetSafe);
}

void AddBinNameOptions(CLI::App& command, BinText& binText, std::string& suffix) {
  AddChoice<BinText>(
      command, "--as", binText,
      {{"label", BinText::kLabel}, {"interval", BinText::kInterval}, {"index", BinText::kIndex}},
      "what names a bin: its label, or its interval where it has none (label, "
      "default), its interval, or its index from 0");
  command
      .add_option(
          "--suffix", suffix,
          "what a column's name gets for its bins (default: _bin); against several targets the "
          "bins are called COLUMN_by_TARGET and this")
      ->type_name("TEXT");
}

}  // namespace TQTool
