#pragma once

#include <functional>
#include <string>

#include "apply/applyoptions.h"
#include "cli/modeloptions.h"
#include "export/exportoptions.h"
#include "run/binningoptions.h"

namespace TQTool {

// What each command does with its options; returns the exit code.
struct Commands {
  std::function<int(const BinningOptions&)> bin;  // supervised and equal-frequency
  std::function<int(const ApplyOptions&)> apply;
  std::function<int(const ModelOptions&)> show;
  std::function<int(const ModelOptions&)> check;
  std::function<int(const ExportOptions&)> exportModel;
  std::function<int(const ModelOptions&)> report;
};

// Reads the command line and gives what it asks for, to be run.  When it asks for a text
// that depends on nothing else (help, version, completion script, manual page), gives
// nothing but that text in `*answer`.  Throws ToolError (kUsage).
std::function<int()> ParseCommandLine(int argc, const char* const* argv, const Commands& commands,
                                      std::string* answer);

}  // namespace TQTool
