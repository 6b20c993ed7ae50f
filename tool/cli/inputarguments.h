#pragma once

#include <CLI/CLI.hpp>

#include "input/inputoptions.h"

namespace TQTool {

// Adds what every command that reads data takes: the inputs, and how to read them.
// `options` is borrowed until the command line is parsed.
void AddInputArguments(CLI::App& command, InputOptions& options);

// Refuses, with ToolError (kUsage), what cannot be meant.
void CheckInputArguments(const InputOptions& options);

}  // namespace TQTool
