#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tqbinning/tqbinning.h>

namespace TQTool {

// Values of one column that the user declares missing: numbers and at most one
// closed range, or, for the target, texts.
struct UserMissing {
  std::string column;
  std::vector<double> numbers;
  std::vector<std::string> texts;
  std::optional<BINNumericInterval> range;
};

// Reads one more --user-missing (COL=9,99 or COL=90..99, COL=..0, COL=90..) and adds
// it to what was said about its column before.  Throws ToolError (kUsage).
void AddUserMissing(std::string_view option, const std::string& target,
                    std::vector<UserMissing>& all);

}  // namespace TQTool
