#include "cli/configfile.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <toml++/toml.h>

#include "base/files.h"
#include "base/nearestname.h"
#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kMaxConfigBytes = std::size_t{1} << 20;

[[noreturn]] void Refuse(const std::string& path, const toml::source_position& where,
                         const std::string& reason) {
  throw ToolError(kUsage,
                  fmt::format("{}:{}:{}: {}", Printable(path), where.line, where.column, reason));
}

toml::table ReadTable(const std::string& path) {
  const std::string text = ReadWholeFile(path, kMaxConfigBytes);
  try {
    return toml::parse(text);
  } catch (const toml::parse_error& error) {
    Refuse(path, error.source().begin,
           fmt::format("{}; expected lines such as closed = \"left\"",
                       Printable(error.description())));
  }
}

// How the file calls an option: by its long name, or the positional one in lower case.
std::string KeyOf(const CLI::Option& option) {
  if (!option.get_lnames().empty()) return option.get_lnames().front();
  std::string key = option.get_name(true);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return key;
}

// The options that the file may set: all but help and the file itself.
std::vector<CLI::Option*> ConfigurableOptions(CLI::App& command) {
  return command.get_options([](const CLI::Option* option) { return option->get_configurable(); });
}

CLI::Option& FindOption(CLI::App& command, const std::string& path, std::string_view key,
                        const toml::source_position& where) {
  std::vector<std::string> names;
  for (CLI::Option* const option : ConfigurableOptions(command)) {
    names.push_back(KeyOf(*option));
    if (names.back() == key) return *option;
  }
  const std::string* const nearest = NearestName(key, names);
  Refuse(
      path, where,
      fmt::format("{} is no option of {}{}; see tqbin {} --help", Quoted(key), command.get_name(),
                  nearest == nullptr ? "" : fmt::format("; did you mean {}?", *nearest),
                  command.get_name()));
}

// A value as the command line would give it.
std::string TextOf(const toml::node& value, const std::string& path) {
  if (const auto* const text = value.as_string()) return text->get();
  if (const auto* const whole = value.as_integer()) return std::to_string(whole->get());
  if (const auto* const number = value.as_floating_point()) return fmt::format("{}", number->get());
  if (const auto* const flag = value.as_boolean()) return flag->get() ? "true" : "false";
  Refuse(path, value.source().begin,
         "this is no value of an option; expected a text in quotes, a number, true or false, or "
         "a list of these in brackets");
}

std::vector<std::string> TextsOf(const toml::node& value, const std::string& path) {
  const toml::array* const list = value.as_array();
  if (list == nullptr) return {TextOf(value, path)};
  std::vector<std::string> texts;
  for (const toml::node& entry : *list) texts.push_back(TextOf(entry, path));
  return texts;
}

// Refuses values of a kind or number that the option does not take.
void CheckValues(const CLI::Option& option, const toml::node& value,
                 const std::vector<std::string>& texts, const std::string& path) {
  const bool isFlag = option.get_items_expected_max() == 0;
  if (isFlag != value.is_boolean()) {
    Refuse(path, value.source().begin,
           fmt::format("{} takes {}", KeyOf(option), isFlag ? "true or false" : "a value"));
  }
  if (!isFlag && static_cast<std::size_t>(option.get_items_expected_max()) < texts.size()) {
    Refuse(path, value.source().begin, fmt::format("{} takes one value only", KeyOf(option)));
  }
}

void TakeConfig(CLI::App& command, const std::string& path) {
  const toml::table table = ReadTable(path);
  for (const auto& [key, value] : table) {
    CLI::Option& option = FindOption(command, path, key.str(), key.source().begin);
    const std::vector<std::string> texts = TextsOf(value, path);
    CheckValues(option, value, texts, path);
    if (option.empty()) option.add_result(texts);
  }
}

}  // namespace

void AddConfigOption(CLI::App& command) {
  command
      .add_option_function<std::string>(
          "--config", [&command](const std::string& path) { TakeConfig(command, path); },
          "TOML file of options by their long names, such as closed = \"left\"; what the command "
          "line gives goes before it")
      ->configurable(false)
      ->type_name("FILE");
}

}  // namespace TQTool
