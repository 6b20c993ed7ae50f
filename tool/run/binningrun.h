#pragma once

#include "model/model.h"
#include "run/binningoptions.h"

namespace TQTool {

// Reads the input, lets the library bin it and makes sure that every case arrived
// in the results.  Throws ToolError when anything fails; columns that could not be
// cut are no failure and say so in their own status.
Model RunBinning(const BinningOptions& options);

}  // namespace TQTool
