#pragma once

#include <stdexcept>
#include <string>

namespace TQTool {

// How the tool ends.  A run that a signal cancelled ends with 128 plus its number.
enum ExitCode : int {
  kDone = 0,
  kDoneWithWarnings = 1,  // only with --strict
  kUsage = 2,             // the command line is at fault
  kInput = 3,             // the input cannot be opened, or holds something unusable
  kFileSystem = 4,        // reading, writing or the temporary directory failed
  kLibraryFailure = 5     // the library reported an error, or memory ran out
};

// Ends the run with a message (one line, no line end) and an exit code.  Thrown
// anywhere in the tool, caught in main; it never travels through the library.
class ToolError : public std::runtime_error {
 public:
  ToolError(int exitCode, const std::string& message)
      : std::runtime_error(message), fExitCode(exitCode) {}
  int GetExitCode() const { return fExitCode; }

 private:
  int fExitCode;
};

}  // namespace TQTool
