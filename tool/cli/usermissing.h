#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "run/binningoptions.h"

namespace TQTool {

// Reads one more --user-missing (COL=9,99 or COL=90..99, COL=..0, COL=90..) and adds
// it to what was said about its column before; of a target it takes texts.  Throws ToolError
// (kUsage).
void AddUserMissing(std::string_view option, const std::vector<std::string>& targets,
                    UserMissing& userMissing);

}  // namespace TQTool
