#include <memory>

#include "base/toolerror.h"
#include "cli/addcommands.h"

namespace TQTool {

void AddExportCommand(CLI::App& app, const Commands& commands, Action& action) {
  CLI::App& command =
      AddCommand(app, "export", "Writes the bins of a model as SQL, Python, C or PMML.");
  const auto options = std::make_shared<ExportOptions>();
  command.add_option("MODEL", options->model, "model file, or - for standard input")
      ->required()
      ->type_name("");
  AddChoice<ExportFormat>(command, "--format", options->format,
                          {{"sql", ExportFormat::kSql},
                           {"python", ExportFormat::kPython},
                           {"c", ExportFormat::kC},
                           {"pmml", ExportFormat::kPmml}},
                          "sql: a query with a CASE expression per column; python: a module; c: a "
                          "C99 source file; pmml: a PMML 4.4 document")
      ->required();
  CLI::Option* const table =
      command.add_option("--table", options->table, "sql: the table to read (default: data)")
          ->type_name("NAME");
  AddBinNameOptions(command, options->binText, options->suffix);
  AddOutputOption(command, options->output);
  command.callback([options, table, &commands, &action] {
    if (table->count() > 0 && options->format != ExportFormat::kSql) {
      throw ToolError(kUsage, "--table: only SQL reads a table; expected --format sql with it");
    }
    action = [options, &commands] { return commands.exportModel(*options); };
  });
}

}  // namespace TQTool
