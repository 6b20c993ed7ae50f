#include "cli/inputarguments.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "input/encoding.h"
#include "input/numbertext.h"

namespace TQTool {
namespace {

constexpr int kMaxColumns = 100000000;  // of which each takes memory

[[noreturn]] void Refuse(const std::string& message) { throw ToolError(kUsage, message); }

// One character that can stand between fields.
char ParseDelimiter(const std::string& text) {
  if (text == "tab" || text == "\\t") return '\t';
  if (text.size() != 1 || text == "\"" || text == "\n" || text == "\r") {
    Refuse(
        fmt::format("--delimiter: {} is no delimiter; expected one character other than a "
                    "quote or a line end, or tab",
                    Quoted(text)));
  }
  return text.front();
}

// A number of bytes: "4096", "64K", "16M", "2G", "1T".
template <class Size>
Size ParseSize(const std::string& option, const std::string& given) {
  std::string_view text = given;
  constexpr std::string_view kUnits = "KMGT";
  constexpr double kMaxSize = 1e15;
  double size = 0.0;
  double unit = 1.0;
  if (const std::size_t power = text.empty() ? text.npos : kUnits.find(text.back());
      power != text.npos) {
    unit = std::pow(1024.0, static_cast<double>(power + 1));
    text.remove_suffix(1);
  }
  const bool isNumber = ReadNumber(text, &size) == NumberText::kNumber;
  size *= unit;
  if (!isNumber || size < 1.0 || size > kMaxSize) {
    Refuse(
        fmt::format("{}: {} is no size; expected bytes, or 64K, 16M, 2G", option, Quoted(given)));
  }
  return static_cast<Size>(size);
}

template <class Size>
void AddSize(CLI::App& command, const std::string& option, Size& size, const std::string& help) {
  command
      .add_option_function<std::string>(
          option,
          [option, &size](const std::string& text) { size = ParseSize<Size>(option, text); }, help)
      ->type_name("SIZE");
}

// Beyond these an input is refused.
void AddLimits(CLI::App& command, InputOptions& options) {
  AddSize(command, "--max-record", options.maxRecordBytes,
          "longest row to take, in bytes or as 64M (default: 16M)");
  command
      .add_option("--max-columns", options.maxColumns,
                  fmt::format("most columns to take (default: {})", options.maxColumns))
      ->check(CLI::Range(1, kMaxColumns).description(""))
      ->type_name("N");
  AddSize(command, "--max-decompressed", options.maxDecompressedBytes,
          "most bytes to take out of one compressed file (default: 64G)");
}

}  // namespace

void AddInputArguments(CLI::App& command, InputOptions& options) {
  command
      .add_option("FILE", options.inputs,
                  "CSV or TSV file with a header line, plain or compressed with gzip or zstd; - "
                  "for standard input; sqlite:FILE?table=NAME, sqlite:FILE?query=SELECT...; "
                  "postgresql://USER@HOST/DATABASE with --query; several are read as one")
      ->required()
      ->type_name("");
  command
      .add_option_function<std::string>(
          "--delimiter",
          [&options](const std::string& text) { options.delimiter = ParseDelimiter(text); },
          "one character, or tab (default: comma, semicolon, tab or bar, whichever cuts the first "
          "rows evenly)")
      ->type_name("CHAR");
  command
      .add_option("--encoding", options.encoding,
                  "encoding of text files, as latin1, windows-1252 or UTF-16 (default: UTF-8, in "
                  "which everything is written)")
      ->type_name("NAME");
  command.add_flag("--decimal-comma", options.hasDecimalComma, "numbers are written as in 3,14");
  command.add_option("--query", options.query, "what to ask a data base for: one SELECT")
      ->type_name("SQL");
  command.add_flag("--verbose", options.isVerbose,
                   "tell on standard error what was found out about the input");
  AddLimits(command, options);
}

void CheckInputArguments(const InputOptions& options) {
  if (!options.encoding.empty() && !IsEncoding(options.encoding)) {
    Refuse(
        fmt::format("--encoding: {} is not known; expected a name such as latin1, windows-1252 or "
                    "UTF-16; iconv -l lists them",
                    Quoted(options.encoding)));
  }
  if (std::count(options.inputs.begin(), options.inputs.end(), "") > 0) {
    Refuse("FILE is empty; expected a path, or - for standard input");
  }
  if (std::count(options.inputs.begin(), options.inputs.end(), "-") > 1) {
    Refuse("standard input is named twice; expected - once");
  }
  if (options.hasDecimalComma && options.delimiter == ',') {
    Refuse("--decimal-comma: the delimiter is a comma as well; expected another one");
  }
}

}  // namespace TQTool
