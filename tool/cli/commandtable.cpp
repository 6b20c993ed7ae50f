#include "cli/commandtable.h"

#include <sstream>

namespace TQTool {
namespace {

// The values that a type such as "csv|tsv" lists.
std::vector<std::string> ChoicesOf(const std::string& value) {
  std::vector<std::string> choices;
  if (value.find('|') == std::string::npos) return choices;
  std::istringstream text(value);
  for (std::string choice; std::getline(text, choice, '|');) choices.push_back(choice);
  return choices;
}

OptionEntry EntryOf(const CLI::Option& option) {
  OptionEntry entry;
  for (const std::string& name : option.get_snames()) entry.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) entry.names.push_back("--" + name);
  if (option.get_positional()) entry.names.push_back(option.get_name(true));
  if (option.get_items_expected_max() > 0) entry.value = option.get_type_name();
  entry.choices = ChoicesOf(entry.value);
  entry.description = option.get_description();
  return entry;
}

CommandEntry EntryOf(const CLI::App& app) {
  CommandEntry entry;
  entry.names.push_back(app.get_name());
  for (const std::string& alias : app.get_aliases()) entry.names.push_back(alias);
  entry.description = app.get_description();
  for (const CLI::Option* const option : app.get_options()) {
    (option->get_positional() ? entry.arguments : entry.options).push_back(EntryOf(*option));
  }
  return entry;
}

}  // namespace

bool OptionEntry::IsFile() const {
  return value == "FILE" || (names.front().front() != '-' && choices.empty());
}

CommandTable TableOf(const CLI::App& app) {
  CommandTable table;
  table.tool = EntryOf(app);
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    table.commands.push_back(EntryOf(*command));
  }
  return table;
}

}  // namespace TQTool
