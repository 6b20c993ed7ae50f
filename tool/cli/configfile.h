#pragma once

#include <CLI/CLI.hpp>

namespace TQTool {

// Adds --config to a command that has no other option yet: the file's options are to be
// known before the others are looked at.  It names a TOML file of the command's options,
// each by its long name; an option that the command line gives stays as it is there.
// Parsing throws ToolError: kInput when the file cannot be read, kUsage for what is no
// TOML, no option of the command, or no value that an option can have.
void AddConfigOption(CLI::App& command);

}  // namespace TQTool
