#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace TQTool {

// Refuses, with ToolError (kFileSystem), a run whose temporary files cannot fit: 8 bytes
// for each of the rows and columns.  The number of rows is an estimate, or unknown; what
// is refused would not fit if it were half as many.
void CheckFreeSpace(const std::string& directory, std::optional<double> rows, std::size_t columns);

}  // namespace TQTool
