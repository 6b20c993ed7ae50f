#include "base/files.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/safemode.h"
#include "base/signals.h"
#include "base/toolerror.h"

namespace TQTool {

OpenedFile OpenForReading(const std::string& path) {
  // Without O_NONBLOCK, opening a pipe would wait for a writer.
  const int safe = IsSafeMode() ? O_NOFOLLOW | O_NONBLOCK : 0;
  const bool isStandardInput = path == "-";
  OpenedFile opened;
  opened.file = Descriptor(isStandardInput ? dup(STDIN_FILENO)
                                           : open(path.c_str(), O_RDONLY | O_CLOEXEC | safe));
  struct stat status = {};
  if (!opened.file.IsOpen() || fstat(opened.file.Get(), &status) != 0) {
    opened.problem = safe != 0 && errno == ELOOP ? "a symbolic link, which --safe does not follow"
                                                 : std::strerror(errno);
  } else if (S_ISDIR(status.st_mode)) {
    opened.problem = std::strerror(EISDIR);
  } else if (safe != 0 && !isStandardInput && !S_ISREG(status.st_mode)) {
    opened.problem = "no regular file, and --safe reads no other";
  }
  return opened;
}

std::string ReadWholeFile(const std::string& path, std::size_t maxSize) {
  const std::string name = path == "-" ? "standard input" : Printable(path);
  const OpenedFile opened = OpenForReading(path);
  if (!opened.problem.empty()) {
    throw ToolError(kInput, fmt::format("{}: cannot be opened: {}; expected a file that can be "
                                        "read; check the path",
                                        name, opened.problem));
  }
  std::string text;
  std::array<char, 65536> block;
  for (;;) {
    WaitForInput(opened.file.Get());
    const ssize_t size = read(opened.file.Get(), block.data(), block.size());
    if (size == 0) return text;
    if (size > 0) {
      text.append(block.data(), static_cast<std::size_t>(size));
    } else if (errno != EINTR && errno != EAGAIN) {
      throw ToolError(kFileSystem, fmt::format("{}: cannot be read: {}; check the path", name,
                                               std::strerror(errno)));
    }
    if (text.size() > maxSize) {
      throw ToolError(kInput, fmt::format("{}: longer than {} bytes; expected a file that tqbin "
                                          "wrote",
                                          name, maxSize));
    }
  }
}

}  // namespace TQTool
