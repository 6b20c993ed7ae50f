#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TQTool {

// What is read, and how; the same for every command that reads data.
struct InputOptions {
  // Paths, "-" for standard input, sqlite:... or postgresql://...; at least one.
  // Several are one data set.
  std::vector<std::string> inputs;
  std::string query;              // what to ask a data base for; empty for none
  std::string encoding;           // of text files; empty for UTF-8
  std::optional<char> delimiter;  // none: found out from the first rows
  bool hasDecimalComma = false;   // as in "3,14"
  bool isVerbose = false;         // says what was found out

  // Beyond these an input is refused.
  std::size_t maxRecordBytes = std::size_t{1} << 24;
  std::size_t maxColumns = 100000;
  std::uint64_t maxDecompressedBytes = std::uint64_t{1} << 36;  // of one input
};

}  // namespace TQTool
