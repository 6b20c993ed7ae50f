#pragma once

#include <string>

#include "export/formats.h"
#include "model/binnames.h"

namespace TQTool {

// What the command line of `export` asks for.
struct ExportOptions {
  std::string model;  // path
  ExportFormat format = kExportFormats[0];
  std::string table = "data";  // SQL: what the query reads
  BinText binText = BinText::kLabel;
  std::string suffix = "_bin";  // what a column's name gets for its bins
  std::string output;           // empty or "-" for standard output
};

}  // namespace TQTool
