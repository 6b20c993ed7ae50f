#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace TQTool {

// The positions of categories in the order in which they are shown: by number
// when all of them are numbers, otherwise byte by byte.  So a table looks the same
// whatever the order of the rows.
std::vector<std::size_t> CategoryOrder(const std::vector<std::string>& categories);

}  // namespace TQTool
