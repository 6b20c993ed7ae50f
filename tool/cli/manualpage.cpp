#include "cli/manualpage.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string_view>

#include <fmt/format.h>

#include "base/version.h"
#include "cli/helpformatter.h"

namespace TQTool {
namespace {

// Text that troff prints as it stands: no request, no typographic quote or hyphen.
std::string Plain(std::string_view text) {
  std::string result;
  if (text.starts_with('.') || text.starts_with('\'')) result += "\\&";
  for (const char c : text) {
    switch (c) {
      case '\\': result += "\\e"; break;
      case '-': result += "\\-"; break;
      case '\'': result += "\\(aq"; break;
      case '`': result += "\\(ga"; break;
      case '^': result += "\\(ha"; break;
      case '~': result += "\\(ti"; break;
      default: result += c;
    }
  }
  return result;
}

// Lines of text, each made plain, with a line end.
std::string PlainLines(const std::string& text) {
  std::string result;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) result += Plain(line) + "\n";
  return result;
}

// Lines that keep their breaks and blanks.
std::string Verbatim(const std::string& text) { return ".EX\n" + PlainLines(text) + ".EE\n"; }

// "-o, --output FILE", names bold and the value in italics.
std::string Term(const OptionEntry& option) {
  std::string text;
  for (const std::string& name : option.names) {
    text += fmt::format("{}\\fB{}\\fP", text.empty() ? "" : ", ", Plain(name));
  }
  if (!option.value.empty()) text += fmt::format(" \\fI{}\\fP", Plain(option.value));
  return text;
}

std::string Described(const std::vector<OptionEntry>& options) {
  std::string text;
  for (const OptionEntry& option : options) {
    text += fmt::format(".TP\n{}\n{}\n", Term(option), Plain(option.description));
  }
  return text;
}

// "tqbin apply MODEL FILE... [OPTIONS]"
std::string Usage(const CommandEntry& command) {
  std::string text = fmt::format(".B tqbin {}\n", Plain(command.names.front()));
  for (const OptionEntry& argument : command.arguments) {
    text += fmt::format("\\fI{}\\fP\n", Plain(argument.names.front()));
  }
  return text + "[\\fIOPTIONS\\fP]\n";
}

std::string Section(const CommandEntry& command) {
  std::string text = fmt::format(".SS {}\n{}.PP\n{}\n", Plain(command.names.front()),
                                 Usage(command), Plain(command.description));
  if (command.names.size() > 1) {
    text += fmt::format("Also called\n.BR {} .\n", Plain(command.names[1]));
  }
  return text + Described(command.arguments) + Described(command.options);
}

}  // namespace

std::string ManualPage(const CommandTable& table) {
  std::string text =
      fmt::format(".TH TQBIN 1 \"\" \"tqbin {}\" \"User Commands\"\n", Plain(kVersion));
  text += ".SH NAME\ntqbin \\- cut numeric columns of a table into bins\n.SH SYNOPSIS\n";
  for (const CommandEntry& command : table.commands) {
    text += (&command == &table.commands.front() ? "" : ".br\n") + Usage(command);
  }
  text += ".SH DESCRIPTION\n" + Plain(table.tool.description) + "\n.PP\n" + PlainLines(kHelpFooter);
  text += ".SH OPTIONS\n" + Described(table.tool.options);
  text += ".SH COMMANDS\n";
  for (const CommandEntry& command : table.commands) text += Section(command);
  return text + ".SH EXAMPLES\n" + Verbatim(kExamples);
}

}  // namespace TQTool
