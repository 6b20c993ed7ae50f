#include "base/files.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/signals.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int file) : fFile(file) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(fFile); }
  int Get() const { return fFile; }

 private:
  int fFile;
};

}  // namespace

std::string ReadWholeFile(const std::string& path, std::size_t maxSize) {
  const std::string name = path == "-" ? "standard input" : Printable(path);
  const Descriptor file(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.Get() < 0) {
    throw ToolError(kInput, fmt::format("{}: cannot be opened: {}; expected a file that can be "
                                        "read; check the path",
                                        name, std::strerror(errno)));
  }
  std::string text;
  std::array<char, 65536> block;
  for (;;) {
    WaitForInput(file.Get());
    const ssize_t size = read(file.Get(), block.data(), block.size());
    if (size == 0) return text;
    if (size > 0) {
      text.append(block.data(), static_cast<std::size_t>(size));
    } else if (errno != EINTR && errno != EAGAIN) {
      throw ToolError(
          errno == EISDIR ? kInput : kFileSystem,
          fmt::format("{}: cannot be read: {}; check the path", name, std::strerror(errno)));
    }
    if (text.size() > maxSize) {
      throw ToolError(kInput, fmt::format("{}: longer than {} bytes; expected a file that tqbin "
                                          "wrote",
                                          name, maxSize));
    }
  }
}

}  // namespace TQTool
