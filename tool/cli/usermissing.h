#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/model.h"

namespace TQTool {

// Values of one column that the user declares missing.
struct UserMissing {
  std::string column;
  MissingRule rule;
};

// Reads one more --user-missing (COL=9,99 or COL=90..99, COL=..0, COL=90..) and adds
// it to what was said about its column before; of a target it takes texts.  Throws ToolError
// (kUsage).
void AddUserMissing(std::string_view option, const std::vector<std::string>& targets,
                    std::vector<UserMissing>& all);

// What was declared missing in a column.
MissingRule MissingRuleOf(std::string_view column, const std::vector<UserMissing>& all);

}  // namespace TQTool
