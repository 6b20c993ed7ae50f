#include "base/privatedirectory.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

// For the signal handler.
std::atomic<const char*> gLivePath{nullptr};
std::atomic<int> gLiveDirectory{-1};
static_assert(std::atomic<const char*>::is_always_lock_free &&
                  std::atomic<int>::is_always_lock_free,
              "used in a signal handler");

// Removes what one look through the directory shows; whether it removed anything.
// Plain system calls throughout: opendir and its kin allocate memory, which a
// signal handler must not.
bool RemoveEntries(int directory) {
  bool removedAny = false;
  lseek(directory, 0, SEEK_SET);
  alignas(dirent64) std::array<char, 4096> entries;
  for (;;) {
    const long size = syscall(SYS_getdents64, directory, entries.data(), entries.size());
    if (size <= 0) return removedAny;
    for (long offset = 0; offset < size;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(entries.data() + offset);
      if (unlinkat(directory, entry->d_name, 0) == 0) removedAny = true;
      offset += entry->d_reclen;
    }
  }
}

// Removes a directory, which is open as `directory`, and the files in it; false when
// something is left.
bool RemoveDirectory(const char* path, int directory) {
  for (;;) {
    if (rmdir(path) == 0) return true;
    if (errno != ENOTEMPTY && errno != EEXIST) return errno == ENOENT;
    if (!RemoveEntries(directory)) return false;
  }
}

}  // namespace

PrivateDirectory::PrivateDirectory(const std::string& base) {
  std::error_code ignored;  // a path that cannot be made absolute is tried as it is
  const std::filesystem::path absolute = std::filesystem::absolute(base, ignored);
  fPath = (absolute / "tqbin-XXXXXX").string();
  if (mkdtemp(fPath.data()) != nullptr) {
    fDirectory = open(fPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (fDirectory < 0) rmdir(fPath.c_str());
  }
  if (fDirectory < 0) {
    throw ToolError(kFileSystem,
                    fmt::format("no private directory can be made below {}: {}; name another "
                                "directory with --temp-dir or TMPDIR",
                                Quoted(base), std::strerror(errno)));
  }
  gLiveDirectory = fDirectory;
  gLivePath = fPath.c_str();
}

PrivateDirectory::~PrivateDirectory() {
  gLivePath = nullptr;
  if (!RemoveDirectory(fPath.c_str(), fDirectory)) {
    fmt::print(stderr, "tqbin: note: {} could not be removed: {}\n", fPath, std::strerror(errno));
  }
  close(fDirectory);
}

std::vector<std::uintmax_t> PrivateDirectory::GetFileSizes() const {
  std::vector<std::uintmax_t> sizes;
  std::error_code error;  // what cannot be read has no right size
  for (const auto& entry : std::filesystem::directory_iterator(fPath, error)) {
    sizes.push_back(entry.file_size(error));
  }
  return sizes;
}

std::string PrivateDirectory::DefaultBase() {
  const char* const base = std::getenv("TMPDIR");
  return base != nullptr && *base != '\0' ? base : "/tmp";
}

void PrivateDirectory::RemoveFromSignalHandler() {
  const char* const path = gLivePath;
  if (path != nullptr) RemoveDirectory(path, gLiveDirectory);
}

}  // namespace TQTool
