#include <memory>

#include "cli/addcommands.h"

namespace TQTool {
namespace {

// A command that reads a model file only.
std::shared_ptr<ModelOptions> AddModelCommand(CLI::App& app, const char* name, const char* help,
                                              const std::function<int(const ModelOptions&)>& run,
                                              Action& action) {
  CLI::App& command = AddCommand(app, name, help);
  auto options = std::make_shared<ModelOptions>();
  AddModelArgument(command, options->model, "model file, or - for standard input");
  command.callback(
      [options, &run, &action] { action = [options, &run] { return run(*options); }; });
  return options;
}

}  // namespace

void AddModelCommands(CLI::App& app, const Commands& commands, Action& action) {
  const auto show =
      AddModelCommand(app, "show", "Shows the bins of a model file.", commands.show, action);
  AddShowingOptions(*app.get_subcommand("show"), show->output);
  const auto report = AddModelCommand(
      app, "report", "Writes an HTML page with charts of a model's bins.", commands.report, action);
  AddOutputOption(*app.get_subcommand("report"), report->output.path);
  const auto check = AddModelCommand(
      app, "check", "Tells whether an edited model file is still good.", commands.check, action);
  app.get_subcommand("check")->add_flag("--strict", check->isStrict,
                                        "end with 1 when there is something to warn about");
  AddOutputOption(*app.get_subcommand("check"), check->output.path);
}

}  // namespace TQTool
