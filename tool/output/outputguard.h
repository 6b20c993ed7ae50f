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

}  // namespace TQTool
