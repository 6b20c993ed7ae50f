#include "output/outputfile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

// The kind of what has this name, as in st_mode; 0 for nothing.
mode_t KindOf(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : fPath(path == "-" ? "" : path), fFile(STDOUT_FILENO) {
  if (fPath.empty()) return;
  const mode_t kind = KindOf(fPath);
  if (kind == S_IFLNK) {
    // Somebody else may have laid it, to have a file of the user's overwritten.
    throw ToolError(kFileSystem,
                    fmt::format("{}: a symbolic link; expected a file, new or to be replaced; name "
                                "the file that it leads to, or - for standard output",
                                Printable(fPath)));
  }
  if (kind != 0 && kind != S_IFREG) {
    fFile = open(fPath.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW);
  } else {
    fTemporary = fPath + ".XXXXXX";
    fFile = mkostemp(fTemporary.data(), O_CLOEXEC);
  }
  if (fFile < 0) {
    fTemporary.clear();
    Fail("cannot be made");
  }
}

OutputFile::~OutputFile() {
  if (!fPath.empty() && fFile >= 0) close(fFile);
  if (!fTemporary.empty()) unlink(fTemporary.c_str());
}

bool OutputFile::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = write(fFile, text.data(), text.size());
    if (size >= 0) {
      text.remove_prefix(static_cast<std::size_t>(size));
    } else if (errno == EPIPE && fPath.empty()) {
      return false;
    } else if (errno != EINTR) {
      Fail("cannot be written");
    }
  }
  return true;
}

void OutputFile::Finish() {
  if (fTemporary.empty()) return;
  if (fsync(fFile) != 0) Fail("cannot be written");
  if (rename(fTemporary.c_str(), fPath.c_str()) != 0) Fail("cannot be given its name");
  fTemporary.clear();
}

void OutputFile::Fail(const char* what) const {
  const int error = errno;
  if (fPath.empty()) {
    throw ToolError(kFileSystem, fmt::format("standard output cannot be written: {}; the results "
                                             "are incomplete",
                                             std::strerror(error)));
  }
  throw ToolError(kFileSystem, fmt::format("{}: {}: {}; check the directory and its free space, "
                                           "or name another file with --output",
                                           Printable(fPath), what, std::strerror(error)));
}

}  // namespace TQTool
