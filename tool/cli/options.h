#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/usermissing.h"

namespace TQTool {

enum class Method { kSupervised, kEqualFrequency };
enum class OutputFormat { kTable, kJson };

// What the command line asks for, checked as far as it can be without the input.
struct Options {
  Method method = Method::kSupervised;
  std::string file;                        // "-" for standard input
  std::string target;                      // empty for equal frequency
  std::vector<std::string> attributes;     // as given: names, or lists of names; empty for all
  std::string weight;                      // empty for none
  std::string weightRounding = "closest";  // closest, down, none
  std::vector<UserMissing> userMissing;
  std::vector<std::string> missingTokens;
  char delimiter = ',';
  int bins = 0;             // equal frequency: how many
  int prebinThreshold = 0;  // supervised: pre-bin beyond this many distinct values; 0 = never
  int prebinBins = 1000;    // supervised: into how many bins
  double minBinFactor = 0.0;
  bool isRightClosed = true;
  std::string tempDir;  // empty for the default
  OutputFormat format = OutputFormat::kTable;
};

// Reads the command line.  When it asks for help or the version, gives no options
// but that text in `*answer`.  Throws ToolError (kUsage).
std::optional<Options> ParseOptions(int argc, const char* const* argv, std::string* answer);

}  // namespace TQTool
