#include "cli/completion.h"

#include <string_view>

#include <fmt/format.h>

namespace TQTool {
namespace {

// A text with a backslash before each of some characters.
std::string Escaped(std::string_view text, std::string_view characters) {
  std::string result;
  for (const char c : text) {
    if (characters.find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

std::string Joined(const std::vector<std::string>& words, std::string_view separator = " ") {
  return fmt::format("{}", fmt::join(words, separator));
}

// Every name of every option.
std::vector<std::string> OptionNames(const CommandEntry& command) {
  std::vector<std::string> names;
  for (const OptionEntry& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

std::vector<std::string> CommandNames(const CommandTable& table) {
  std::vector<std::string> names;
  for (const CommandEntry& command : table.commands) names.push_back(command.names.front());
  return names;
}

// --- bash

// What prints the words that can stand for a value.
std::string BashWords(const OptionEntry& option) {
  if (option.IsFile()) return "compgen -f -- \"$current\"";
  if (option.IsDirectory()) return "compgen -d -- \"$current\"";
  if (option.choices.empty()) return ":";
  return fmt::format("compgen -W '{}' -- \"$current\"", Joined(option.choices));
}

// The cases of options whose value can be anything are one.
std::string BashValues(const std::vector<OptionEntry>& options) {
  std::string text;
  std::vector<std::string> free;
  for (const OptionEntry& option : options) {
    if (option.value.empty()) continue;
    const std::string words = BashWords(option);
    if (words == ":") {
      free.insert(free.end(), option.names.begin(), option.names.end());
    } else {
      text += fmt::format("        {}) {} ;;\n", Joined(option.names, " | "), words);
    }
  }
  if (!free.empty()) text += fmt::format("        {}) ;;\n", Joined(free, " | "));
  return text;
}

std::string BashCommand(const CommandEntry& command) {
  const std::string words = command.arguments.empty() ? ":" : BashWords(command.arguments.front());
  return fmt::format(
      "    {})\n"
      "      case $previous in\n"
      "{}"
      "        *)\n"
      "          if [[ $current == -* ]]; then\n"
      "            compgen -W '{}' -- \"$current\"\n"
      "          else\n"
      "            {}\n"
      "          fi\n"
      "          ;;\n"
      "      esac\n"
      "      ;;\n",
      Joined(command.names, " | "), BashValues(command.options), Joined(OptionNames(command)),
      words);
}

constexpr std::string_view kBashEnd = R"(  esac
}

_tqbin() {
  local command='' word
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  # bash takes --option=value for three words
  if [[ $current == = ]]; then
    current=''
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if [[ $word != -* ]]; then
      command=$word
      break
    fi
  done
  mapfile -t COMPREPLY < <(_tqbin_words "$command" "$current" "$previous")
}

complete -o filenames -F _tqbin tqbin
)";

// --- zsh

// "--name[explanation]:VALUE:(a b)", in single quotes.
std::string ZshValue(const OptionEntry& option) {
  std::string action = " ";
  if (option.IsFile()) action = "_files";
  if (option.IsDirectory()) action = "_files -/";
  if (!option.choices.empty()) action = fmt::format("({})", Joined(option.choices));
  return fmt::format(":{}:{}", Escaped(option.value, ":\\"), action);
}

// Text within single quotes.
std::string ZshQuoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? "'\\''" : std::string(1, c);
  return result + "'";
}

std::string ZshOption(const OptionEntry& option) {
  std::string text = fmt::format("[{}]", Escaped(option.description, "[]:\\"));
  if (!option.value.empty()) text += ZshValue(option);
  if (option.names.size() == 1) return ZshQuoted("*" + option.names.front() + text);
  return fmt::format("'*'{{{}}}{}", Joined(option.names, ","), ZshQuoted(text));
}

std::string ZshCommand(const CommandEntry& command) {
  std::string text = fmt::format("        {})\n          _arguments", Joined(command.names, "|"));
  for (const OptionEntry& option : command.options) {
    text += " \\\n            " + ZshOption(option);
  }
  for (const OptionEntry& argument : command.arguments) {
    const bool isLast = &argument == &command.arguments.back();
    OptionEntry named = argument;
    if (named.value.empty()) named.value = named.names.front();
    text += " \\\n            " + ZshQuoted((isLast ? "*" : "") + ZshValue(named));
  }
  return text + "\n          ;;\n";
}

// --- fish

std::string FishQuoted(const std::string& text) { return "'" + Escaped(text, "\\'") + "'"; }

std::string FishOption(const std::string& condition, const OptionEntry& option) {
  std::string text = "complete -c tqbin" + condition;
  for (const std::string& name : option.names) {
    text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  if (!option.choices.empty()) {
    text += " -x -a " + FishQuoted(Joined(option.choices));
  } else if (option.IsDirectory()) {
    text += " -x -a '(__fish_complete_directories)'";
  } else if (!option.value.empty()) {
    text += option.IsFile() ? " -r -F" : " -x";
  }
  return text + " -d " + FishQuoted(option.description) + "\n";
}

std::string FishCommand(const CommandEntry& command) {
  const std::string condition =
      fmt::format(" -n '__fish_seen_subcommand_from {}'", Joined(command.names));
  std::string text;
  for (const OptionEntry& option : command.options) text += FishOption(condition, option);
  for (const OptionEntry& argument : command.arguments) {
    text += "complete -c tqbin" + condition;
    text += argument.IsFile() ? " -F\n" : " -a " + FishQuoted(Joined(argument.choices)) + "\n";
  }
  return text;
}

}  // namespace

std::string BashCompletion(const CommandTable& table) {
  std::string text =
      "# bash completion for tqbin\n\n"
      "# The words that can stand at a place: after a command (empty: before one), beginning\n"
      "# like the current word, behind the previous word.\n"
      "_tqbin_words() {\n"
      "  local command=$1 current=$2 previous=$3\n"
      "  case $command in\n";
  for (const CommandEntry& command : table.commands) text += BashCommand(command);
  text += fmt::format("    '') compgen -W '{} {}' -- \"$current\" ;;\n",
                      Joined(CommandNames(table)), Joined(OptionNames(table.tool)));
  return text.append(kBashEnd);
}

std::string ZshCompletion(const CommandTable& table) {
  std::string text =
      "#compdef tqbin\n\n"
      "_tqbin() {\n"
      "  local context state state_descr line\n"
      "  local -a commands\n"
      "  typeset -A opt_args\n"
      "  commands=(\n";
  for (const CommandEntry& command : table.commands) {
    const std::string entry = command.names.front() + ":" + Escaped(command.description, ":\\");
    text += "    " + ZshQuoted(entry) + "\n";
  }
  text += "  )\n  _arguments -C";
  for (const OptionEntry& option : table.tool.options) text += " \\\n    " + ZshOption(option);
  text +=
      " \\\n    '1:command:->command' \\\n    '*::argument:->argument'\n"
      "  case $state in\n"
      "    command) _describe command commands ;;\n"
      "    argument)\n"
      "      case $words[1] in\n";
  for (const CommandEntry& command : table.commands) text += ZshCommand(command);
  return text +
         "      esac\n"
         "      ;;\n"
         "  esac\n"
         "}\n\n"
         "# The file can lie in fpath, where its first call completes at once, or be sourced.\n"
         "if [[ ${funcstack[1]} == _tqbin ]]; then\n"
         "  _tqbin \"$@\"\n"
         "else\n"
         "  compdef _tqbin tqbin\n"
         "fi\n";
}

std::string FishCompletion(const CommandTable& table) {
  std::string text = "# fish completion for tqbin\n\ncomplete -c tqbin -f\n";
  for (const OptionEntry& option : table.tool.options) {
    text += FishOption(" -n __fish_use_subcommand", option);
  }
  for (const CommandEntry& command : table.commands) {
    text += fmt::format("complete -c tqbin -n __fish_use_subcommand -a {} -d {}\n",
                        command.names.front(), FishQuoted(command.description));
  }
  for (const CommandEntry& command : table.commands) text += "\n" + FishCommand(command);
  return text;
}

}  // namespace TQTool
