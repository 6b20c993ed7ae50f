#pragma once

#include <string>

#include "model/model.h"

namespace TQTool {

// The bins as CSV, for programs: a row per bin, always with the same columns; a column
// of data without bins has one row, which tells its status.  Numbers are the shortest
// texts that read back the same; what is not known, and a bound that a bin does not
// have, is an empty field.  The counts of the target's categories are JSON objects.
std::string WriteBinCsv(const Model& model, bool isSpreadsheetSafe);

}  // namespace TQTool
