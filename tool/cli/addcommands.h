#pragma once

#include <functional>
#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "base/plaintext.h"
#include "cli/commandline.h"
#include "output/outputoptions.h"

namespace TQTool {

// What is to be run, once the command line has been read.
using Action = std::function<int()>;

// Each adds commands with their options; the one that the command line names sets
// `action`, or throws ToolError (kUsage) for options that cannot be meant.
void AddBinningCommands(CLI::App& app, const Commands& commands, Action& action);
void AddApplyCommand(CLI::App& app, const Commands& commands, Action& action);
void AddModelCommands(CLI::App& app, const Commands& commands, Action& action);
void AddExportCommand(CLI::App& app, const Commands& commands, Action& action);

// Adds the commands that write down the options of all commands, for shells and for
// manual pages; the one that is named puts its text into `answer`.
void AddShellCommands(CLI::App& app, std::string& answer);

// A new command, with what every command that reads files has.
CLI::App& AddCommand(CLI::App& app, const std::string& name, const std::string& description);

// What every command that reads a model has.
void AddModelArgument(CLI::App& command, std::string& model, const std::string& help);

// What every command that writes has.
void AddOutputOption(CLI::App& command, std::string& output);

// What every command that shows bins has.
void AddShowingOptions(CLI::App& command, OutputOptions& options);

// The flag that makes CSV safe for spreadsheets.
void AddSpreadsheetOption(CLI::App& command, bool& isSpreadsheetSafe);

// What every command that names bins has.
void AddBinNameOptions(CLI::App& command, BinText& binText, std::string& suffix);

// The names of `values` with something between them.
template <class Value>
std::string NamesOf(const std::map<std::string, Value>& values, const std::string& separator) {
  std::string names;
  for (const auto& entry : values) names += (names.empty() ? "" : separator) + entry.first;
  return names;
}

// An option that takes one of the names of `values`.
template <class Value>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, Value& value,
                       const std::map<std::string, Value>& values, const std::string& help) {
  const auto choose = [&value, values, name](const std::string& text) {
    const auto found = values.find(text);
    if (found == values.end()) {
      throw CLI::ValidationError(name,
                                 Quoted(text) + " is not one of " + NamesOf<Value>(values, ", "));
    }
    value = found->second;
  };
  return command.add_option_function<std::string>(name, choose, help)
      ->type_name(NamesOf<Value>(values, "|"));
}

}  // namespace TQTool
