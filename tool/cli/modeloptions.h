#pragma once

#include <string>

namespace TQTool {

enum class OutputFormat { kTable, kJson };

// What the command line asks of a model file.
struct ModelOptions {
  std::string model;  // path, or "-" for standard input
  OutputFormat format = OutputFormat::kTable;
  bool isStrict = false;  // warnings make the exit code 1
  std::string output;     // empty or "-" for standard output
};

}  // namespace TQTool
