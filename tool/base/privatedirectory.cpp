#include "base/privatedirectory.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "base/ownerfile.h"
#include "base/plaintext.h"
#include "base/staledirectories.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr int kMaxAttempts = 100;

// For the signal handler.
std::atomic<const char*> gLivePath{nullptr};
std::atomic<int> gLiveDirectory{-1};
static_assert(std::atomic<const char*>::is_always_lock_free &&
                  std::atomic<int>::is_always_lock_free,
              "used in a signal handler");

// Removes a directory, which is open as `directory`, and what it holds; false when
// something is left.
bool RemoveDirectory(const char* path, int directory) {
  for (;;) {
    if (rmdir(path) == 0) return true;
    if (errno != ENOTEMPTY && errno != EEXIST) return errno == ENOENT;
    if (!RemoveFilesIn(directory)) return false;
  }
}

}  // namespace

PrivateDirectory::PrivateDirectory(const std::string& base) {
  std::error_code ignored;  // a path that cannot be made absolute is tried as it is
  const std::filesystem::path absolute = std::filesystem::absolute(base, ignored);
  RemoveStaleDirectories(absolute);
  const std::string pattern = absolute / kPrivateName;
  // Another run that is sweeping may take a directory for stale before it is locked.
  int attempts = 0;
  while (!Make(pattern)) {
    if (errno == EWOULDBLOCK && ++attempts < kMaxAttempts) continue;
    throw ToolError(kFileSystem,
                    fmt::format("no private directory can be made below {}: {}; name another "
                                "directory with --temp-dir or TMPDIR",
                                Quoted(base), std::strerror(errno)));
  }
  gLiveDirectory = fDirectory.Get();
  gLivePath = fPath.c_str();
}

// False, with errno and nothing left behind, when that fails.
bool PrivateDirectory::Make(const std::string& pattern) {
  fPath = pattern;
  if (mkdtemp(fPath.data()) == nullptr) return false;
  fDirectory = Descriptor(open(fPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
  if (fDirectory.IsOpen()) {
    fOwner = LockOwnerFile(fDirectory.Get());
    if (fOwner.IsOpen()) return true;
  }
  const int error = errno == ENOENT ? EWOULDBLOCK : errno;
  if (error != EWOULDBLOCK) unlinkat(fDirectory.Get(), kOwnerFile, 0);
  rmdir(fPath.c_str());
  errno = error;
  return false;
}

PrivateDirectory::~PrivateDirectory() {
  gLivePath = nullptr;
  if (!RemoveDirectory(fPath.c_str(), fDirectory.Get())) {
    fmt::print(stderr, "tqbin: note: {} could not be removed: {}\n", fPath, std::strerror(errno));
  }
}

std::string PrivateDirectory::MakeSubdirectory(const std::string& name) const {
  std::string path = fPath + "/" + name;
  if (mkdirat(fDirectory.Get(), name.c_str(), S_IRWXU) == 0) return path;
  throw ToolError(kFileSystem,
                  fmt::format("{} cannot be made: {}", Quoted(path), std::strerror(errno)));
}

std::string PrivateDirectory::DefaultBase() {
  const char* const base = std::getenv("TMPDIR");
  return base != nullptr && *base != '\0' ? base : "/tmp";
}

void PrivateDirectory::RemoveFromSignalHandler() {
  const char* const path = gLivePath;
  if (path != nullptr) RemoveDirectory(path, gLiveDirectory);
}

std::vector<std::uintmax_t> FileSizesIn(const std::string& directory) {
  std::vector<std::uintmax_t> sizes;
  std::error_code error;  // what cannot be read has no right size
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    if (entry.path().filename() != kOwnerFile) sizes.push_back(entry.file_size(error));
  }
  return sizes;
}

}  // namespace TQTool
