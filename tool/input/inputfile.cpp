#include "input/inputfile.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/files.h"
#include "base/plaintext.h"
#include "base/signals.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

[[noreturn]] void ThrowCannotOpen(const std::string& name, const std::string& reason) {
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
    : fName(path == "-" ? "standard input" : Printable(path)) {
  OpenedFile opened = OpenForReading(path);
  if (!opened.problem.empty()) {
    ThrowIfCancelled();
    ThrowCannotOpen(fName, opened.problem);
  }
  fFile = std::move(opened.file);
}

std::uint64_t InputFile::GetSize() const {
  struct stat status = {};
  const bool isKnown = fstat(fFile.Get(), &status) == 0 && S_ISREG(status.st_mode);
  return isKnown ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::size_t InputFile::Read(char* buffer, std::size_t size) {
  for (;;) {
    WaitForInput(fFile.Get());
    const ssize_t count = read(fFile.Get(), buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR && errno != EAGAIN) {
      throw ToolError(kFileSystem, fmt::format("{}: cannot be read: {}; nothing was binned", fName,
                                               std::strerror(errno)));
    }
  }
}

}  // namespace TQTool
