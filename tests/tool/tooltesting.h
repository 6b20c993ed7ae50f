#pragma once

// The small vocabulary of the tool's tests.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/toolerror.h"
#include "input/csvreader.h"

namespace TQTool {

// A source of CSV text that hands it out in blocks of `blockSize` bytes.
inline ReadBlock InBlocks(const std::string& text, std::size_t blockSize) {
  const auto rest = std::make_shared<std::string>(text);
  return [rest, blockSize](char* buffer, std::size_t size) {
    const std::size_t count = std::min({size, blockSize, rest->size()});
    rest->copy(buffer, count);
    rest->erase(0, count);
    return count;
  };
}

inline CsvReader ReaderOf(const std::string& text, std::size_t blockSize = 1000000,
                          char delimiter = ',') {
  return CsvReader(InBlocks(text, blockSize), "f.csv", delimiter);
}

using Rows = std::vector<std::vector<std::string>>;

// What a call throws as ToolError: "exit code: message"; "none" when nothing.
template <class Call>
std::string ErrorOf(const Call& call) {
  try {
    call();
  } catch (const ToolError& error) {
    return std::to_string(error.GetExitCode()) + ": " + error.what();
  }
  return "none";
}

}  // namespace TQTool
