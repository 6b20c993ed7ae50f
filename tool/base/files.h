#pragma once

#include <cstddef>
#include <string>

namespace TQTool {

// The content of a file, "-" for standard input.  Throws ToolError: kInput when it
// cannot be opened or holds more than `maxSize` bytes, kFileSystem when reading fails.
std::string ReadWholeFile(const std::string& path, std::size_t maxSize);

}  // namespace TQTool
