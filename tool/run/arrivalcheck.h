#pragma once

#include <cstdint>
#include <vector>

#include "model/model.h"
#include "run/recordfeed.h"

namespace TQTool {

// Every variable has a temporary file of 8 bytes per case: one that is shorter lost
// values, which the library would read as zeros.  Throws ToolError (kFileSystem)
// unless `numVariables` of the sizes are right.
void CheckFileSizes(const std::vector<std::uintmax_t>& sizes, std::uint64_t cases,
                    int numVariables);

// Every column's numbers must be those that were fed: reading a file back may fail as
// well.  Throws ToolError (kFileSystem).  Also notes bins that do not add up.
void CheckArrival(const std::vector<BinnedAttribute>& attributes, const FedData& fed);

}  // namespace TQTool
