#pragma once

#include <string>

namespace TQTool {

// Keeps what code of others prints to standard output away from the tool's data:
// while it lives, file descriptor 1 leads into memory.
class OutputGuard {
 public:
  // Throws ToolError (kFileSystem) when the descriptor cannot be redirected.
  OutputGuard();
  OutputGuard(const OutputGuard&) = delete;
  OutputGuard& operator=(const OutputGuard&) = delete;
  ~OutputGuard();

  // Restores standard output and returns the beginning of what was printed.
  std::string Finish();

 private:
  int fOutput;  // the real standard output; -1 once restored
  int fMemory;
};

// Writes text to standard output, all of it.  A reader that has gone is no error;
// throws ToolError (kFileSystem) for any other failure.
void WriteStandardOutput(const std::string& text);

}  // namespace TQTool
