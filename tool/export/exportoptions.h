#pragma once

#include <string>

#include "model/binnames.h"

namespace TQTool {

enum class ExportFormat { kSql, kPython, kC, kPmml };

// What the command line of `export` asks for.
struct ExportOptions {
  std::string model;  // path
  ExportFormat format = ExportFormat::kSql;
  std::string table = "data";  // SQL: what the query reads
  BinText binText = BinText::kLabel;
  std::string suffix = "_bin";  // what a column's name gets for its bins
  std::string output;           // empty or "-" for standard output
};

}  // namespace TQTool
