#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TQTool {

// The name that was probably meant by `wanted`: one that begins with it, or one
// that differs in few letters, upper and lower case being the same.  The earlier
// of equally near ones; null when none is near.  Points into `names`.
const std::string* NearestName(std::string_view wanted, const std::vector<std::string>& names);

}  // namespace TQTool
