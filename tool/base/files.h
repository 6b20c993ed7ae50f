#pragma once

#include <cstddef>
#include <string>

#include "base/descriptor.h"

namespace TQTool {

// A file that was opened, or why it could not be.
struct OpenedFile {
  Descriptor file;
  std::string problem;  // empty when it is open
};

// Opens a file for reading, "-" for standard input.  Directories are refused; in safe
// mode so is whatever is no regular file, symbolic links included.
OpenedFile OpenForReading(const std::string& path);

// The content of a file, "-" for standard input.  Throws ToolError: kInput when it
// cannot be opened or holds more than `maxSize` bytes, kFileSystem when reading fails.
std::string ReadWholeFile(const std::string& path, std::size_t maxSize);

}  // namespace TQTool
