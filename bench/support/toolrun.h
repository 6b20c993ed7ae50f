#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/support/binningrun.h"

// Runs of tqbin, the command-line tool, as a child process.
namespace bench {

struct ToolRun {
  std::string file;  // the CSV file, with columns x0, x1, ..., y[, w]
  int attributes = 0;
  bool isWeighted = false;
  RunSettings settings;
};

struct ToolResult {
  double seconds = 0.0;    // from start to exit
  double peakBytes = 0.0;  // the child's
  std::string json;        // what it wrote
};

// `directory` receives the tool's output and temporary files.  Throws
// std::runtime_error when the tool cannot be started or fails.
ToolResult RunTool(const std::string& tool, const ToolRun& run, const std::string& directory);

// What is wrong with a result for so many rows, in words; empty when all rows
// arrived, every attribute has a status without error, and its bins add up.
// `cutCounts` receives the number of cuts of each attribute.
std::string ComplaintAbout(const ToolResult& result, const ToolRun& run, std::size_t rows,
                           std::vector<std::size_t>* cutCounts);

}  // namespace bench
