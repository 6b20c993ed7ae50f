#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace TQTool {

// An option or a positional argument, as the help explains it.
struct OptionEntry {
  std::vector<std::string> names;    // with their dashes; a positional argument has one without
  std::string value;                 // what is to be given: "FILE", "csv|tsv"; empty for a flag
  std::vector<std::string> choices;  // the only values there are; empty when they are not listed
  std::string description;

  // Whether the value is the path of a file.
  bool IsFile() const;
  // Whether it is the path of a directory.
  bool IsDirectory() const { return value == "DIR"; }
};

// A command with all that it takes.
struct CommandEntry {
  std::vector<std::string> names;  // its own, then its aliases
  std::string description;
  std::vector<OptionEntry> arguments;  // positional
  std::vector<OptionEntry> options;
};

// What the parser knows of its options, for those who write it down in other forms than
// the help: shell completions and the manual page.
struct CommandTable {
  CommandEntry tool;  // what stands before any command
  std::vector<CommandEntry> commands;
};

CommandTable TableOf(const CLI::App& app);

}  // namespace TQTool
