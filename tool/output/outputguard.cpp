#include "output/outputguard.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/toolerror.h"

namespace TQTool {

OutputGuard::OutputGuard()
    : fOutput(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)),
      fMemory(memfd_create("tqbin", MFD_CLOEXEC)) {
  std::fflush(stdout);
  if (fOutput < 0 || fMemory < 0 || dup2(fMemory, STDOUT_FILENO) < 0) {
    throw ToolError(kFileSystem,
                    fmt::format("standard output cannot be redirected: {}", std::strerror(errno)));
  }
}

OutputGuard::~OutputGuard() {
  Finish();
  close(fMemory);
}

std::string OutputGuard::Finish() {
  if (fOutput < 0) return {};
  std::fflush(stdout);
  dup2(fOutput, STDOUT_FILENO);
  close(fOutput);
  fOutput = -1;
  std::array<char, 200> text;
  const ssize_t size = pread(fMemory, text.data(), text.size(), 0);
  return std::string(text.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
}

}  // namespace TQTool
