#pragma once

#include <string>

namespace TQTool {

enum class OutputFormat { kTable, kJson, kNdjson, kCsv, kMarkdown };
enum class ColorUse { kAuto, kAlways, kNever };

// How and where bins are to be shown.
struct OutputOptions {
  std::string path;  // empty or "-" for standard output
  OutputFormat format = OutputFormat::kTable;
  ColorUse color = ColorUse::kAuto;
  bool isSpreadsheetSafe = false;
};

}  // namespace TQTool
