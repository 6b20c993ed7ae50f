#include "cli/commandline.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "base/nearestname.h"
#include "base/plaintext.h"
#include "base/toolerror.h"
#include "base/version.h"
#include "cli/addcommands.h"
#include "cli/helpformatter.h"

namespace TQTool {
namespace {

std::vector<std::string> CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  return names;
}

// "; did you mean ...?" for what resembles a name of the command, else nothing.
std::string Suggestion(const std::string& wanted, const CLI::App& command) {
  std::vector<std::string> names = CommandNames(command);
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  const std::string* const nearest = NearestName(wanted, names);
  return nearest == nullptr ? "" : fmt::format("; did you mean {}?", *nearest);
}

// Turns what the parser has to complain about into a message of ours.
[[noreturn]] void RefuseCommandLine(const CLI::ParseError& error, const CLI::App& app) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  const CLI::App& command = chosen.empty() ? app : *chosen.front();
  const std::string help =
      chosen.empty() ? "tqbin --help" : fmt::format("tqbin {} --help", command.get_name());
  const std::vector<std::string> surplus = app.remaining(true);
  std::string message = error.what();
  if (!surplus.empty()) {
    message = fmt::format("{} was not expected{}", Quoted(surplus.front()),
                          Suggestion(surplus.front(), command));
  } else if (chosen.empty()) {
    message =
        fmt::format("no command is named; expected one of {}", fmt::join(CommandNames(app), ", "));
  }
  std::replace(message.begin(), message.end(), '\n', ' ');
  throw ToolError(kUsage, fmt::format("{}; see {}", Printable(message), help));
}

}  // namespace

std::function<int()> ParseCommandLine(int argc, const char* const* argv, const Commands& commands,
                                      std::string* answer) {
  CLI::App app("Cuts numeric columns of a table into bins, and works with the bins.", "tqbin");
  app.formatter(std::make_shared<HelpFormatter>());
  app.footer(kHelpFooter);
  app.set_help_flag("-h,--help", "this help; of a command after its name");
  app.set_version_flag("--version", fmt::format("tqbin {}", kVersion), "the tool's version");
  app.require_subcommand(1);
  Action action;
  AddBinningCommands(app, commands, action);
  AddApplyCommand(app, commands, action);
  AddModelCommands(app, commands, action);
  AddExportCommand(app, commands, action);
  AddShellCommands(app, *answer);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    *answer = app.help();
    return nullptr;
  } catch (const CLI::CallForVersion& version) {
    *answer = std::string(version.what()) + "\n";
    return nullptr;
  } catch (const CLI::ParseError& error) {
    RefuseCommandLine(error, app);
  }
  return action;
}

}  // namespace TQTool
