#pragma once

#include <string>
#include <vector>

#include "input/inputoptions.h"
#include "model/binnames.h"

namespace TQTool {

enum class RowFormat { kCsv, kTsv, kNdjson };
// What to do with a value beyond those that the model was made of, or with a text that
// is no number.
enum class OddValue { kBin, kMissing, kRefuse };

// What the command line of `apply` asks for.
struct ApplyOptions {
  std::string model;  // path
  InputOptions input;
  std::vector<std::string> attributes;     // names; empty for all of the model
  std::vector<std::string> missingTokens;  // empty for the model's
  BinText binText = BinText::kLabel;
  RowFormat format = RowFormat::kCsv;
  OddValue outOfRange = OddValue::kBin;
  OddValue notNumber = OddValue::kRefuse;  // never kBin
  std::string missingText;                 // the bin of a missing value
  std::string suffix = "_bin";             // what a column's name gets for its bins
  bool areBinsOnly = false;                // leave the columns of the data out
  bool isSpreadsheetSafe = false;
  std::string output;  // empty or "-" for standard output
};

}  // namespace TQTool
