#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/usermissing.h"
#include "input/inputoptions.h"
#include "model/model.h"

namespace TQTool {

enum class OutputFormat { kTable, kJson };

// What the command line asks for, checked as far as it can be without the input.
struct Options {
  Method method = Method::kSupervised;
  InputOptions input;
  std::string target;                   // empty for equal frequency
  std::vector<std::string> attributes;  // as given: names, or lists of names; empty for all
  std::vector<UserMissing> userMissing;
  Settings settings;
  std::string tempDir;  // empty for the default
  OutputFormat format = OutputFormat::kTable;
  std::string output;  // a file to write; empty or "-" for standard output
};

// Reads the command line.  When it asks for help or the version, gives no options
// but that text in `*answer`.  Throws ToolError (kUsage).
std::optional<Options> ParseOptions(int argc, const char* const* argv, std::string* answer);

}  // namespace TQTool
