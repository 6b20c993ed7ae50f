#pragma once

#include <string>
#include <string_view>

namespace TQTool {

// Where the data of a command go: a file, or standard output when the path is empty or
// "-".  A file is written under a temporary name beside it and takes its own name in
// Finish, so that it is there complete or not at all; the destructor removes what was
// not finished.  What is no regular file, such as a device, is written directly.
class OutputFile {
 public:
  // Throws ToolError (kFileSystem) when the file cannot be made or its name is a
  // symbolic link.
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // Writes all of the text.  Standard output's reader may have gone: false, and more
  // need not be written.  Throws ToolError (kFileSystem) for any other failure.
  bool Write(std::string_view text);

  // Makes the file complete and gives it its name.  Throws ToolError (kFileSystem).
  void Finish();

 private:
  [[noreturn]] void Fail(const char* what) const;

  std::string fPath;       // empty for standard output
  std::string fTemporary;  // empty once renamed, and for what is written directly
  int fFile;
};

}  // namespace TQTool
