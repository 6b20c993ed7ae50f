#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace TQTool {

// What the help begins and ends with.
extern const char* const kExamples;
extern const char* const kHelpFooter;

// Help with the examples first, and in lines that fit a terminal.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;
  std::string make_option(const CLI::Option* option, bool isPositional) const override;
  std::string make_subcommand(const CLI::App* command) const override;
};

}  // namespace TQTool
