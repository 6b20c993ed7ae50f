#include <iterator>
#include <map>
#include <memory>
#include <string>

#include <fmt/format.h>

#include "base/toolerror.h"
#include "cli/addcommands.h"
#include "export/formats.h"

namespace TQTool {
namespace {

// "SQL, Python, C or PMML".
std::string Languages() {
  std::string text;
  for (const ExportFormat& format : kExportFormats) {
    const bool isLast = &format == std::end(kExportFormats) - 1;
    text += text.empty() ? "" : isLast ? " or " : ", ";
    text += format.language;
  }
  return text;
}

void AddFormatOption(CLI::App& command, ExportFormat& chosen) {
  std::map<std::string, ExportFormat> formats;
  std::string help;
  for (const ExportFormat& format : kExportFormats) {
    formats.emplace(format.name, format);
    help += fmt::format("{}{}: {}", help.empty() ? "" : "; ", format.name, format.description);
  }
  AddChoice<ExportFormat>(command, "--format", chosen, formats, help)->required();
}

}  // namespace

void AddExportCommand(CLI::App& app, const Commands& commands, Action& action) {
  CLI::App& command =
      AddCommand(app, "export", fmt::format("Writes the bins of a model as {}.", Languages()));
  const auto options = std::make_shared<ExportOptions>();
  AddModelArgument(command, options->model, "model file, or - for standard input");
  AddFormatOption(command, options->format);
  CLI::Option* const table =
      command.add_option("--table", options->table, "sql: the table to read (default: data)")
          ->type_name("NAME");
  AddBinNameOptions(command, options->binText, options->suffix);
  AddOutputOption(command, options->output);
  command.callback([options, table, &commands, &action] {
    if (table->count() > 0 && !options->format.readsTable) {
      throw ToolError(kUsage, "--table: only SQL reads a table; expected --format sql with it");
    }
    action = [options, &commands] { return commands.exportModel(*options); };
  });
}

}  // namespace TQTool
