#include "input/inputfile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/signals.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

[[noreturn]] void ThrowCannotOpen(const std::string& name, const char* reason) {
  throw ToolError(kInput, fmt::format("{}: cannot be opened: {}; expected a CSV file, or - for "
                                      "standard input",
                                      name, reason));
}

}  // namespace

void InputFile::CheckReadable(const std::string& path) {
  if (path != "-" && access(path.c_str(), R_OK) != 0) {
    ThrowCannotOpen(Printable(path), std::strerror(errno));
  }
}

InputFile::InputFile(const std::string& path)
    : fName(path == "-" ? "standard input" : Printable(path)), fFile(-1) {
  fFile = path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fFile < 0) {
    ThrowIfCancelled();
    ThrowCannotOpen(fName, std::strerror(errno));
  }
  struct stat status = {};
  if (fstat(fFile, &status) == 0 && S_ISDIR(status.st_mode)) {
    close(fFile);
    ThrowCannotOpen(fName, std::strerror(EISDIR));
  }
}

InputFile::~InputFile() { close(fFile); }

std::size_t InputFile::Read(char* buffer, std::size_t size) {
  for (;;) {
    WaitForInput(fFile);
    const ssize_t count = read(fFile, buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR && errno != EAGAIN) {
      throw ToolError(kFileSystem, fmt::format("{}: cannot be read: {}; nothing was binned", fName,
                                               std::strerror(errno)));
    }
  }
}

}  // namespace TQTool
