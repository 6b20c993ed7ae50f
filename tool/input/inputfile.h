#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/descriptor.h"

namespace TQTool {

// The file that is read, or standard input when its path is "-".
class InputFile {
 public:
  // Opens it.  Throws ToolError (kInput) when that fails or it is a directory.
  explicit InputFile(const std::string& path);

  // Throws the same when it could not be opened now.
  static void CheckReadable(const std::string& path);

  // How messages call it: its path, or "standard input".
  const std::string& GetName() const { return fName; }

  // How many bytes it holds; 0 when that is not known, as for a pipe.
  std::uint64_t GetSize() const;

  // Reads up to `size` bytes, at least one unless the end is reached; their
  // number, 0 at the end.  Throws ToolError: kFileSystem when reading fails, or
  // the one of a cancelled run.
  std::size_t Read(char* buffer, std::size_t size);

 private:
  std::string fName;
  Descriptor fFile;
};

}  // namespace TQTool
